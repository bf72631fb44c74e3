#pragma once

namespace Zq::Gantry::Server::Shared::WMI {

/// Asks the firmware whether its platform flag is set. Every failure is false, with its warnings.
[[nodiscard]] bool ReadBiosPlatformFlag();

/// Whether one of the machine's OEM strings carries the marker. Every failure is false, with its
/// warnings.
[[nodiscard]] bool FindCarbonSupportOemString();

}  // namespace Zq::Gantry::Server::Shared::WMI
