#pragma once

#include <map>
#include <optional>

// What follows from the collector's answer to StartCollecting.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// What the answer means. The library stays loaded for the first three and is unloaded otherwise.
enum class CollectorVerdict {
  kStarted,             ///< status 1
  kFirmwareTooOld,      ///< status -1; the library is loaded and idle
  kDeviceNotSupported,  ///< status 0; the library is loaded and idle
  kNoStatus,            ///< the answer has no status for the kind of data
  kUnknownFailure,      ///< any other status, or a failure before the answer; logged elsewhere
};

/// The only kind of data that is requested.
inline constexpr int kPowerSamples = 0;

/// The verdict for the status of kPowerSamples; other kinds are ignored.
[[nodiscard]] CollectorVerdict JudgeCollectorStatus(const std::map<int, int>& statusByKind);

/// The support state (platform/wmi/support_decision.h) that replaces the one from the probes; empty
/// if the verdict says nothing about the machine.
[[nodiscard]] std::optional<int> SupportStateOf(CollectorVerdict verdict);

/// Whether the collector's library stays loaded.
[[nodiscard]] bool KeepsCollectorLoaded(CollectorVerdict verdict);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
