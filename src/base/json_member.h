#pragma once

#include <rapidjson/document.h>

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The first member of that name; null where `value` is no object or has none.
const rapidjson::Value* TryMember(const rapidjson::Value& value, const char* name);

/// The same for a member that is a string, and for one that is a number; of another type counts as
/// missing.
const rapidjson::Value* TryStringMember(const rapidjson::Value& value, const char* name);
const rapidjson::Value* TryNumberMember(const rapidjson::Value& value, const char* name);

/// The bytes of a string, zeros included.
std::string TextOf(const rapidjson::Value& text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
