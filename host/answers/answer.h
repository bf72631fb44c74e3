#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "answers/command_facts.h"

namespace WattleafHost {

struct SeriesEntry {
  std::string label;
  double value = 0.0;
};

/// The result of commands 4 to 6: {"Range":[low,high],"Value":[{"Time":"2:00","Value":0.0},...]}.
struct Series {
  double low = 0.0;
  double high = 0.0;
  std::vector<SeriesEntry> entries;
};

struct RankedApp {
  std::string name;
  /// Path of its PNG; empty if it has none.
  std::string icon;
  /// Percent of the energy of the period.
  double share = 0.0;
};

/// The result of command 2, largest share first: [{"Name":"...","Icon":"...","Value":37.5},...].
using Ranking = std::vector<RankedApp>;

/// The result of one command, read once. All texts are UTF-8.
struct Answer {
  unsigned int number = 0;
  int status = 0;
  /// Empty unless the status is 0.
  std::string text;
  /// The text as a value; nothing for other commands, another status, and a text of another form.
  std::variant<std::monostate, Series, Ranking> value;
};

/// The input of command 2: "FOLDER?DAYS".
[[nodiscard]] std::string RankingInput(const std::string& iconFolder, unsigned int days);

/// The days of such an input, unchanged; "0", the service's default, if it has none.
[[nodiscard]] std::string DaysOfInput(const std::string& input);

/// Reads `text`, which must be empty unless the status is 0.
[[nodiscard]] Answer MakeAnswer(unsigned int number, int status, std::string text);

/// Reads a series; the label member may have any name. Nothing for a text of another form.
[[nodiscard]] std::optional<Series> TryReadSeries(const std::string& text);

/// Nothing for a text of another form, for example one that was cut off.
[[nodiscard]] std::optional<Ranking> TryReadRanking(const std::string& text);

/// A result of the service as UTF-8. The service decodes the text of command 2. In the other texts
/// it widens each byte of UTF-8 to a character, by sign extension: those characters are narrowed
/// again, and a text with any other character is converted.
[[nodiscard]] std::string ResultToUtf8(unsigned int number, std::wstring_view result);

/// Whether `answer` is one of this command, with a result.
[[nodiscard]] bool IsResultOf(Command command, const Answer& answer);

/// False if the command returned a status other than 0.
[[nodiscard]] bool HasResult(const Answer& answer);

/// The percent that a ranking leaves of 100: all other applications and Windows itself. Nothing for
/// an empty ranking, since it may have no energy at all.
[[nodiscard]] std::optional<double> EverythingElse(const Ranking& ranking);

/// "0", or the status in hex: "0x20000001".
[[nodiscard]] std::string StatusText(int status);

/// The meaning of a status other than 0, in words. Command 2 has no result if the 30-day store is
/// missing, as before the first pass, or cannot be read.
[[nodiscard]] std::string StatusMeaning(const Answer& answer);

}  // namespace WattleafHost
