#pragma once

#include <windows.h>

#include <inspectable.h>

#include <string>

// What a boxed value holds. Raises CallFailure where it holds something else.
namespace Zq::Gantry::Security {

std::wstring ReadBoxedString(IInspectable& value);
double ReadBoxedDouble(IInspectable& value);

/// A string as it is, a number as its shortest text, a truth value as "true" or "false"; any other
/// type raises E_INVALIDARG.
std::wstring ReadBoxedText(IInspectable& value);

}  // namespace Zq::Gantry::Security
