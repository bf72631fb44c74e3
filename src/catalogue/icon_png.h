#pragma once

#include <windows.h>

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Writes an icon, which stays the caller's, as a PNG file with its alpha. False where any step
/// failed; nothing is logged.
bool SaveIconAsPng(HICON icon, const std::wstring& path);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
