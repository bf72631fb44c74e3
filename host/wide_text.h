#pragma once

#include <string>

namespace WattleafHost {

/// UTF-16 to UTF-8; what is not valid becomes U+FFFD.
std::string ToUtf8(const std::wstring& text);

/// UTF-8 to UTF-16.
std::wstring ToWide(const std::string& utf8);

/// A result of the service as UTF-8. The service widens UTF-8 byte by byte, by sign extension,
/// without decoding: a text that is such bytes is taken back to them, any other is converted.
std::string ResultToUtf8(const std::wstring& result);

}  // namespace WattleafHost
