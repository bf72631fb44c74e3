#pragma once

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Whether the process is ending, as opposed to the library being freed. True only within the
/// library's static clean-up: by then the system has killed all other threads, and other libraries
/// may have been cleaned up already.
bool IsProcessEnding();

}  // namespace Zq::Gantry::Server::Services::Wattleaf
