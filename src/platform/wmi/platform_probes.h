#pragma once

// The two probes of the platform decision (support_decision.h), made against this machine. Both
// connect to WMI, block until it answers, and leave COM before they return. Each failed call logs
// its warning, and the probe returns false; if memory for a text runs out, _com_error propagates.
namespace Zq::Gantry::Server::Shared::WMI {

/// Whether the platform flag of the firmware is set. Writes the probe value to the firmware and
/// reads it back first (ReadPlatformFlag), over one connection.
[[nodiscard]] bool ReadBiosPlatformFlag();

/// Whether one of the machine's OEM strings (Win32_ComputerSystem, OEMStringArray) contains the
/// marker "CarbonSupport=1" (HoldsCarbonMarker).
[[nodiscard]] bool FindCarbonSupportOemString();

}  // namespace Zq::Gantry::Server::Shared::WMI
