#include "collection/wattleaf_helper.h"
#include "platform/wmi/platform_probes.h"
#include "platform/wmi/support_decision.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace WMI = Zq::Gantry::Server::Shared::WMI;

int WattleafHelper::IsPlatformSupported() {
  const int known = PlatformSupportState.load(std::memory_order_relaxed);
  if (known != WMI::kPlatformUndecided) return known;

  const int decided =
      WMI::DecidePlatformSupport(WMI::ReadBiosPlatformFlag, WMI::FindCarbonSupportOemString);
  // The probes take long enough for the collector, or another thread, to settle the state: what
  // was stored first stands.
  int stored = WMI::kPlatformUndecided;
  const bool isFirst =
      PlatformSupportState.compare_exchange_strong(stored, decided, std::memory_order_relaxed);
  return isFirst ? decided : stored;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
