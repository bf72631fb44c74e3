#include "service/zq_service.h"

#include <cstdlib>

namespace Zq::Gantry::Server::Services {

void ZQService::FreeResult(void* buffer) { std::free(buffer); }

}  // namespace Zq::Gantry::Server::Services
