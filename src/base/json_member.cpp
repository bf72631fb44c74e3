#include "base/json_member.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

const rapidjson::Value* TryMember(const rapidjson::Value& value, const char* name) {
  if (!value.IsObject()) return nullptr;
  const auto member = value.FindMember(name);
  return member != value.MemberEnd() ? &member->value : nullptr;
}

const rapidjson::Value* TryStringMember(const rapidjson::Value& value, const char* name) {
  const rapidjson::Value* member = TryMember(value, name);
  return member != nullptr && member->IsString() ? member : nullptr;
}

const rapidjson::Value* TryNumberMember(const rapidjson::Value& value, const char* name) {
  const rapidjson::Value* member = TryMember(value, name);
  return member != nullptr && member->IsNumber() ? member : nullptr;
}

std::string TextOf(const rapidjson::Value& text) {
  return {text.GetString(), text.GetStringLength()};
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
