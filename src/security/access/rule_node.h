#pragma once

#include <optional>
#include <string>

#include "abi/xml_shapes.h"

// What a rule's node holds. Calls that fail raise CallFailure.
namespace Zq::Gantry::Security {

/// The text inside the node, without its tags. A null node raises E_POINTER.
std::wstring ReadInnerText(Platform::WinRt::IXmlNode* node);

/// The value of the attribute; absent where the node has none of that name, or none at all.
std::optional<std::wstring> TryReadAttribute(Platform::WinRt::IXmlNode& node, const wchar_t* name);

}  // namespace Zq::Gantry::Security
