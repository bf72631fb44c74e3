#include "platform/wmi/support_decision.h"

namespace Zq::Gantry::Server::Shared::WMI {

int DecidePlatformSupport(const std::function<bool()>& readBiosFlag,
                          const std::function<bool()>& findOemMarker) {
  if (!readBiosFlag()) return kPlatformNotSupported;
  return findOemMarker() ? kPlatformSupported : kPlatformNeedsFirmware;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
