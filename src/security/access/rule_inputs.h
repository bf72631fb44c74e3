#pragma once

#include <windows.h>

#include <inspectable.h>

#include <optional>
#include <string>

#include "abi/xml_shapes.h"

// The inputs of a rule as plain values: the texts of its XML node, and the content of the boxed
// value to be judged. Each call that fails throws Platform::WinRt::CallFailure; nothing is logged.
namespace Zq::Gantry::Security {

/// The text inside the node, without its tags (IXmlNodeSerializer). Throws E_POINTER for null.
[[nodiscard]] std::wstring ReadInnerText(Platform::WinRt::IXmlNode* node);

/// The value of the attribute; absent if the node has no attribute of that name, or is of a kind
/// without attributes.
[[nodiscard]] std::optional<std::wstring> TryReadAttribute(Platform::WinRt::IXmlNode& node,
                                                           const wchar_t* name);

/// The string or the number in the box. Throws CallFailure for a box of another type.
[[nodiscard]] std::wstring ReadBoxedString(IInspectable& value);
[[nodiscard]] double ReadBoxedDouble(IInspectable& value);

/// A string as it is, a number as its shortest text (ShortestNumberText), a truth value as "true"
/// or "false". Throws E_INVALIDARG for any other type.
[[nodiscard]] std::wstring ReadBoxedText(IInspectable& value);

}  // namespace Zq::Gantry::Security
