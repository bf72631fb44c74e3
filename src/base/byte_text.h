#pragma once

#include <string>

// Conversions character by character, without a character set: exact for ASCII only. Other text
// goes through base/utf8_text.h, except where the contract asks for these.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// One wide character per byte of [begin, end), by sign extension; nothing is decoded. Exact below
/// 0x80 only. The result has `end - begin` characters.
[[nodiscard]] std::wstring WidenBytes(const char* begin, const char* end);

/// The low byte of each wide character of [begin, end); the rest of the character is lost. The
/// result has `end - begin` bytes.
[[nodiscard]] std::string NarrowChars(const wchar_t* begin, const wchar_t* end);

}  // namespace Zq::Gantry::Server::Services::Wattleaf

namespace Zq::Gantry::Server::Services {

/// Has no operations. The name is part of the library's interface.
class StringUtils {};

}  // namespace Zq::Gantry::Server::Services
