#pragma once

#include <string>
#include <string_view>

namespace Zq::Gantry::Security {

/// The 16-bit units of a text, as Windows has them. Where `wchar_t` has four bytes, a character
/// beyond 0xFFFF becomes two units. Lone surrogates and nulls are units like others.
std::u16string CodeUnits(std::wstring_view text);

}  // namespace Zq::Gantry::Security
