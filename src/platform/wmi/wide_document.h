#pragma once

#include <rapidjson/document.h>

namespace Zq::Gantry::Server::Shared::WMI {

/// RapidJSON's document over wide characters, for texts as WMI gives them.
using WideDocument = rapidjson::GenericDocument<rapidjson::UTF16<wchar_t>>;
using WideValue = WideDocument::ValueType;

}  // namespace Zq::Gantry::Server::Shared::WMI
