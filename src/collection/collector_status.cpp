#include "collection/collector_status.h"

#include "platform/wmi/support_decision.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

CollectorVerdict JudgeCollectorStatus(const std::map<int, int>& statusByKind) {
  const auto entry = statusByKind.find(kPowerSamples);
  if (entry == statusByKind.end()) return CollectorVerdict::kNoStatus;
  switch (entry->second) {
    case 1:
      return CollectorVerdict::kStarted;
    case -1:
      return CollectorVerdict::kFirmwareTooOld;
    case 0:
      return CollectorVerdict::kDeviceNotSupported;
    default:
      return CollectorVerdict::kUnknownFailure;
  }
}

std::optional<int> SupportStateOf(CollectorVerdict verdict) {
  switch (verdict) {
    case CollectorVerdict::kStarted:
      return Shared::WMI::kPlatformSupported;
    case CollectorVerdict::kFirmwareTooOld:
      return Shared::WMI::kPlatformNeedsFirmware;
    case CollectorVerdict::kDeviceNotSupported:
      return Shared::WMI::kPlatformNotSupported;
    case CollectorVerdict::kNoStatus:
    case CollectorVerdict::kUnknownFailure:
      return std::nullopt;
  }
  return std::nullopt;
}

bool KeepsCollectorLoaded(CollectorVerdict verdict) {
  return verdict != CollectorVerdict::kNoStatus && verdict != CollectorVerdict::kUnknownFailure;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
