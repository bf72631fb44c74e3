#include "reports/ranking_text.h"

#include <string_view>

#include "base/json_memory.h"
#include "base/utf8_text.h"
#include "reports/decimal_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using Writer = JsonWriterInto<JsonBuffer>;

bool WriteText(Writer& writer, const std::string& text) {
  return writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

bool WriteEntry(Writer& writer, const TopAppEntry& entry) {
  return writer.StartObject() && writer.Key(kAnswerNameKey) && WriteText(writer, entry.Name) &&
         writer.Key(kAnswerIconKey) && WriteText(writer, entry.Icon) &&
         writer.Key(kAnswerValueKey) && writer.Double(static_cast<double>(entry.Value)) &&
         writer.EndObject();
}

// Kept on purpose: the writer rejects a number that is not finite, and the text written so far is
// the answer (test RankingText.EndsAfterTheColonOfAValueThatIsNotFinite).
bool WriteRanking(Writer& writer, const Ranking& ranking) {
  if (!writer.StartArray()) return false;
  for (const TopAppEntry& entry : ranking) {
    if (!WriteEntry(writer, entry)) return false;
  }
  return writer.EndArray();
}

}  // namespace

// Kept on purpose: the first "?" ends the directory even if it is part of one, as in "\\?\C:"
// (test SplitRankingRequest.SplitsAtTheFirstQuestionMarkEvenInsideAPath).
RankingRequest SplitRankingRequest(const std::wstring& input) {
  const auto separator = input.find(L'?');
  if (separator == std::wstring::npos) return {};
  return {input.substr(0, separator), DecimalNumber(input.c_str() + separator + 1)};
}

std::wstring RankingText(const Ranking& ranking) {
  JsonBuffer buffer;
  Writer writer(buffer);
  static_cast<void>(WriteRanking(writer, ranking));
  return FromUtf8(std::string_view(buffer.GetString(), buffer.GetSize()));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
