#pragma once

#include <string>

// The results of commands as text, and how a text reaches the host.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// printf's "%f" in the C locale: six digits after the point, no grouping, no limit to the length.
/// "inf", "-inf" and "nan" for values that are not finite.
[[nodiscard]] std::wstring FloatToWideString(float value);

/// Plain decimal digits, with a leading "-" below zero.
[[nodiscard]] std::wstring IntToWideString(int value);

/// Copies `result` into a new block of the C heap and stores its address in `*output`; the caller
/// frees it (ZQService::FreeResult). False, with `*output` untouched, if the text is empty or
/// longer than kLargestResultChars allows, `output` is null, or there is no memory.
[[nodiscard]] bool HandOver(const std::wstring& result, wchar_t** output);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
