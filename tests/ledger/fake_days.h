#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/date_text.h"
#include "base/json_document.h"
#include "base/json_rows.h"
#include "base/scratch_folder.h"
#include "ledger/day_energy.h"
#include "ledger/sample_energy.h"

namespace TestSupport {

/// What the ledger books for 36 watts (the default of `Sample`) over 300 and 600 seconds.
inline constexpr float kWhOf300Seconds = 3.0F / 0.88F;
inline constexpr float kWhOf600Seconds = 6.0F / 0.88F;

/// One sample as JSON text. `time` is "2024-05-06T10:00:00", `power` any JSON value.
[[nodiscard]] inline std::string Sample(const std::string& time, const std::string& power = "36",
                                        const std::string& type = "PCM_SENSOR") {
  return R"({"TelemetryType":")" + type + R"(","SampleTime":")" + time + R"(","Power":)" + power +
         "}";
}

/// A JSON array of the given JSON texts.
[[nodiscard]] inline std::string List(const std::vector<std::string>& elements) {
  std::string text = "[";
  for (const std::string& element : elements) text += (text.size() > 1 ? "," : "") + element;
  return text + "]";
}

/// The parsed document; null if the text does not parse.
[[nodiscard]] inline std::unique_ptr<Zq::Gantry::Server::Services::Wattleaf::GenericDocument>
Document(const std::string& json) {
  auto document = std::make_unique<Zq::Gantry::Server::Services::Wattleaf::GenericDocument>();
  document->Parse(json.c_str());
  if (document->HasParseError()) return nullptr;
  return document;
}

/// Passes a list of samples, given as JSON text, to `sink`, from a file; false if the text does not
/// parse or is not an array.
[[nodiscard]] inline bool PassSamples(const std::string& json,
                                      Zq::Gantry::Server::Services::Wattleaf::JsonRowSink& sink) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  static const ScratchFolder folder;
  const auto path = folder.File("samples.json");
  WriteBytes(path, json);
  return ReadJsonRows(path.wstring(), kSampleMembers, sink) == JsonRowsOutcome::kRows;
}

/// Reads days by their samples.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DaySummaryReader Summarized(
    Zq::Gantry::Server::Services::Wattleaf::DayReader read) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  return [read = std::move(read)](const DateTime& day) {
    DaySummaryMaker samples;
    return read(day, samples) ? std::make_shared<const DaySummary>(samples.Finish()) : nullptr;
  };
}

/// Midnight of a date such as "2024-05-06", as the ledger reads it from its file.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DateTime Day(const std::string& date) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  DateTime day;
  return ParseDateTime(day, date.c_str(), kDateFormat);
}

/// The date of a day, such as "2024-05-06".
[[nodiscard]] inline std::string DateOf(
    const Zq::Gantry::Server::Services::Wattleaf::DateTime& day) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  return FormatDateTime(day, kDateFormat);
}

/// Samples by date, as JSON texts. A date without an entry reads as an empty array.
class FakeDays {
 public:
  FakeDays(std::initializer_list<std::pair<const std::string, std::string>> days) : days_(days) {}

  [[nodiscard]] Zq::Gantry::Server::Services::Wattleaf::DaySummaryReader Summaries() {
    return Summarized(Reader());
  }

  [[nodiscard]] Zq::Gantry::Server::Services::Wattleaf::DayReader Reader() {
    return [this](const Zq::Gantry::Server::Services::Wattleaf::DateTime& day,
                  Zq::Gantry::Server::Services::Wattleaf::JsonRowSink& sink) {
      readDates_.push_back(DateOf(day));
      const auto found = days_.find(readDates_.back());
      return PassSamples(found != days_.end() ? found->second : "[]", sink);
    };
  }

  /// The dates that were read, in order.
  [[nodiscard]] const std::vector<std::string>& ReadDates() const { return readDates_; }

 private:
  std::map<std::string, std::string> days_;
  std::vector<std::string> readDates_;
};

}  // namespace TestSupport
