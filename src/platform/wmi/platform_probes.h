#pragma once

// The two probes of the platform decision (support_decision.h) on this machine. Both join COM,
// connect to WMI, block until it answers, and leave COM before they return; for the one exception
// see ZQBiosWmi::GetReady. Each failed call logs one warning, and the probe returns false. If
// memory for a text runs out, _com_error propagates.
namespace Zq::Gantry::Server::Shared::WMI {

/// Whether the platform flag of the firmware is set. Before the flag is read, a probe value is
/// written to the firmware and read back (ReadPlatformFlag). All commands share one connection.
[[nodiscard]] bool ReadBiosPlatformFlag();

/// Whether one of the machine's OEM strings (Win32_ComputerSystem, OEMStringArray) contains the
/// marker "CarbonSupport=1" (HoldsCarbonMarker).
[[nodiscard]] bool FindCarbonSupportOemString();

}  // namespace Zq::Gantry::Server::Shared::WMI
