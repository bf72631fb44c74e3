#pragma once

#include <string>
#include <string_view>

// The seam between UTF-16 and UTF-8: one Windows body, one native twin.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// WideCharToMultiByte and MultiByteToWideChar with code page 65001. Lengths are kept, embedded
/// zeros included; what is no valid text becomes U+FFFD.
std::string ToUtf8(std::wstring_view text);
std::wstring FromUtf8(std::string_view text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
