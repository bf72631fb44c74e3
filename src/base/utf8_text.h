#pragma once

#include <string>
#include <string_view>

// The seam between wide text and UTF-8, with one body for Windows (WideCharToMultiByte and
// MultiByteToWideChar with code page 65001) and one for other systems. Wide text is UTF-16 on
// Windows and UTF-32 elsewhere. Embedded zeros are kept; what is not valid text becomes U+FFFD.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Wide text as UTF-8. `text` has at most 2^31 - 1 characters.
[[nodiscard]] std::string ToUtf8(std::wstring_view text);

/// UTF-8 as wide text. `text` has at most 2^31 - 1 bytes.
[[nodiscard]] std::wstring FromUtf8(std::string_view text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
