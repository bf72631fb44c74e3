#pragma once

#include <rapidjson/document.h>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// RapidJSON's document over UTF-8 with a memory-pool allocator.
using GenericDocument = rapidjson::GenericDocument<rapidjson::UTF8<char>>;

}  // namespace Zq::Gantry::Server::Services::Wattleaf
