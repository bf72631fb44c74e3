#pragma once

namespace Zq::Gantry::Server::Services {

/// Without operations; the name is part of the library's interface.
class StringUtils {};

}  // namespace Zq::Gantry::Server::Services
