#include "series.h"

#include <rapidjson/document.h>

namespace WattleafHost {

namespace {

using rapidjson::Value;

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

}  // namespace

std::optional<Series> TryReadSeries(const std::string& text) {
  rapidjson::Document document;
  // Without recursion: the depth of the text is not ours to trust.
  document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
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

}  // namespace WattleafHost
