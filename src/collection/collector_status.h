#pragma once

#include <map>
#include <optional>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// What the collector's answer to StartCollecting means.
enum class CollectorVerdict {
  kStarted,
  kFirmwareTooOld,      ///< the library stays loaded and idle
  kDeviceNotSupported,  ///< the library stays loaded and idle
  kNoStatus,            ///< the map has no status for the kind; the library is unloaded
  kUnknownFailure,      ///< the library is unloaded, without a message
};

/// The one kind of data that is ever asked for.
inline constexpr int kPowerSamples = 0;

CollectorVerdict JudgeCollectorStatus(const std::map<int, int>& statusByKind);

/// The support state that a verdict puts in place of the probes' answer, if it does.
std::optional<int> SupportStateOf(CollectorVerdict verdict);

/// Whether the library goes on running, or at least stays loaded.
bool KeepsCollectorLoaded(CollectorVerdict verdict);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
