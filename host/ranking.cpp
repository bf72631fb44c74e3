#include "ranking.h"

#include <rapidjson/document.h>

namespace WattleafHost {

namespace {

using rapidjson::Value;

std::optional<std::string> TryReadText(const Value& object, const char* name) {
  const auto member = object.FindMember(name);
  if (member == object.MemberEnd() || !member->value.IsString()) return std::nullopt;
  return std::string(member->value.GetString(), member->value.GetStringLength());
}

std::optional<RankedApp> TryReadApp(const Value& element) {
  if (!element.IsObject()) return std::nullopt;
  auto name = TryReadText(element, "Name");
  auto icon = TryReadText(element, "Icon");
  const auto share = element.FindMember("Value");
  if (!name || !icon || share == element.MemberEnd() || !share->value.IsNumber()) {
    return std::nullopt;
  }
  return RankedApp{std::move(*name), std::move(*icon), share->value.GetDouble()};
}

}  // namespace

std::optional<Ranking> TryReadRanking(const std::string& text) {
  rapidjson::Document document;
  // Without recursion: the depth of the text is not ours to trust.
  document.Parse<rapidjson::kParseIterativeFlag>(text.data(), text.size());
  if (document.HasParseError() || !document.IsArray()) return std::nullopt;

  Ranking ranking;
  for (const Value& element : document.GetArray()) {
    auto app = TryReadApp(element);
    if (!app) return std::nullopt;
    ranking.push_back(std::move(*app));
  }
  return ranking;
}

std::string RankingRequest(const std::string& iconFolder, unsigned int days) {
  return iconFolder + "?" + std::to_string(days);
}

std::string DaysOfRequest(const std::string& request) {
  const auto mark = request.find('?');
  return mark == std::string::npos ? "0" : request.substr(mark + 1);
}

}  // namespace WattleafHost
