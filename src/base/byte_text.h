#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// One wide character for each byte, by sign extension; nothing is decoded. Exact below 0x80 only.
std::wstring WidenBytes(const char* begin, const char* end);

/// The low byte of each wide character.
std::string NarrowChars(const wchar_t* begin, const wchar_t* end);

}  // namespace Zq::Gantry::Server::Services::Wattleaf

namespace Zq::Gantry::Server::Services {

/// Without operations; the name is part of the library's interface.
class StringUtils {};

}  // namespace Zq::Gantry::Server::Services
