#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Six digits behind the point, the C locale's point, no grouping, no limit to the length.
std::wstring FloatToWideString(float value);

/// Plain decimal digits with a leading "-" below zero.
std::wstring IntToWideString(int value);

/// Copies `result` into a block of the C heap, which FreeResult takes back, and stores it in
/// `*output`. False, with `*output` untouched, where there is nothing to hand over, it is longer
/// than kLargestResultChars allows, or there is no place or no memory for it.
[[nodiscard]] bool HandOver(const std::wstring& result, wchar_t** output);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
