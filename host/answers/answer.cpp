#include "answers/answer.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <utility>

#include "base/utf8_text.h"
#include "snapshot/application_shares.h"

namespace WattleafHost {

namespace {

using rapidjson::Value;
using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;
using Zq::Gantry::Server::Services::Wattleaf::kNoResult;
using Zq::Gantry::Server::Services::Wattleaf::kResultHandedOver;
using Zq::Gantry::Server::Services::Wattleaf::kUnknownCommand;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

/// Without recursion, since the nesting of the text may be deep.
void Parse(const std::string& text, rapidjson::Document& document) {
  document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
}

const Value* Member(const Value& object, const char* name) {
  const auto member = object.FindMember(name);
  return member == object.MemberEnd() ? nullptr : &member->value;
}

std::optional<SeriesEntry> TryReadEntry(const Value& element) {
  if (!element.IsObject() || element.MemberCount() != 2) return std::nullopt;
  const Value& label = element.MemberBegin()->value;
  const Value* value = Member(element, "Value");
  if (!label.IsString() || value == nullptr || !value->IsNumber()) return std::nullopt;
  return SeriesEntry{{label.GetString(), label.GetStringLength()}, value->GetDouble()};
}

bool ReadRange(const Value& range, Series& series) {
  if (!range.IsArray() || range.Size() != 2) return false;
  if (!range[0].IsNumber() || !range[1].IsNumber()) return false;
  series.low = range[0].GetDouble();
  series.high = range[1].GetDouble();
  return true;
}

std::optional<std::string> TryReadText(const Value& object, const char* name) {
  const Value* value = Member(object, name);
  if (value == nullptr || !value->IsString()) return std::nullopt;
  return std::string(value->GetString(), value->GetStringLength());
}

std::optional<RankedApp> TryReadApp(const Value& element) {
  if (!element.IsObject()) return std::nullopt;
  auto name = TryReadText(element, "Name");
  auto icon = TryReadText(element, "Icon");
  const Value* share = Member(element, "Value");
  if (!name || !icon || share == nullptr || !share->IsNumber()) return std::nullopt;
  return RankedApp{std::move(*name), std::move(*icon), share->GetDouble()};
}

bool IsSeriesCommand(unsigned int number) {
  const CommandFacts* facts = FindCommand(number);
  return facts != nullptr && !facts->chartTitle.empty();
}

bool IsWidenedByte(wchar_t c) { return c < 0x80 || c >= 0xFF80; }

/// Each invalid part becomes U+FFFD and would come back as other bytes.
bool IsUtf8(const std::string& bytes) { return ToUtf8(FromUtf8(bytes)) == bytes; }

}  // namespace

std::string RankingInput(const std::string& iconFolder, unsigned int days) {
  return iconFolder + "?" + std::to_string(days);
}

std::string DaysOfInput(const std::string& input) {
  const auto mark = input.find('?');
  return mark == std::string::npos ? "0" : input.substr(mark + 1);
}

Answer MakeAnswer(unsigned int number, int status, std::string text) {
  Answer answer{number, status, std::move(text), {}};
  if (IsResultOf(Command::kTopApplications, answer)) {
    if (auto ranking = TryReadRanking(answer.text)) answer.value = std::move(*ranking);
  } else if (HasResult(answer) && IsSeriesCommand(number)) {
    if (auto series = TryReadSeries(answer.text)) answer.value = std::move(*series);
  }
  return answer;
}

std::optional<Series> TryReadSeries(const std::string& text) {
  rapidjson::Document document;
  Parse(text, document);
  if (document.HasParseError() || !document.IsObject()) return std::nullopt;

  Series series;
  const Value* range = Member(document, "Range");
  const Value* values = Member(document, "Value");
  if (range == nullptr || values == nullptr || !values->IsArray()) return std::nullopt;
  if (!ReadRange(*range, series)) return std::nullopt;
  for (const Value& element : values->GetArray()) {
    auto entry = TryReadEntry(element);
    if (!entry) return std::nullopt;
    series.entries.push_back(std::move(*entry));
  }
  return series;
}

std::optional<Ranking> TryReadRanking(const std::string& text) {
  rapidjson::Document document;
  Parse(text, document);
  if (document.HasParseError() || !document.IsArray()) return std::nullopt;

  Ranking ranking;
  for (const Value& element : document.GetArray()) {
    auto app = TryReadApp(element);
    if (!app) return std::nullopt;
    ranking.push_back(std::move(*app));
  }
  return ranking;
}

std::string ResultToUtf8(unsigned int number, std::wstring_view result) {
  const bool isDecoded = number == NumberOf(Command::kTopApplications);
  if (isDecoded || !std::all_of(result.begin(), result.end(), IsWidenedByte)) {
    return ToUtf8(result);
  }
  std::string bytes(result.size(), '\0');
  std::transform(result.begin(), result.end(), bytes.begin(),
                 [](wchar_t c) { return static_cast<char>(c & 0xFF); });
  return IsUtf8(bytes) ? bytes : ToUtf8(result);
}

bool IsResultOf(Command command, const Answer& answer) {
  return HasResult(answer) && answer.number == NumberOf(command);
}

bool HasResult(const Answer& answer) { return answer.status == kResultHandedOver; }

std::optional<double> EverythingElse(const Ranking& ranking) {
  if (ranking.empty()) return std::nullopt;
  double sum = 0.0;
  for (const RankedApp& app : ranking) sum += app.share;
  return RestOfPercents(sum);
}

std::string StatusText(int status) {
  if (status == kResultHandedOver) return "0";
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "0x%08x", static_cast<unsigned int>(status));
  return buffer.data();
}

std::string StatusMeaning(const Answer& answer) {
  if (answer.status == kUnknownCommand) return "unknown command";
  if (answer.status != kNoResult) return "unknown status";
  return answer.number == NumberOf(Command::kTopApplications) ? "no readable store" : "no result";
}

}  // namespace WattleafHost
