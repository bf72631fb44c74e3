#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// CopyFileA over whatever file stands at `to`, with the service's own rights. False where nothing
/// was copied. Both texts end at their first zero; whether a name may be written to is the caller's
/// to know.
bool CopyLogo(const std::string& from, const std::string& to);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
