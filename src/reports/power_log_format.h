#pragma once

// The files of application energy in the data folder, and the members of the 30-day store.
namespace Zq::Gantry::Server::Services::Wattleaf {

inline constexpr wchar_t kPowerReportFileName[] = L"Powerlog.xml";
inline constexpr wchar_t kPowerStoreFileName[] = L"Powerlog.json";
inline constexpr wchar_t kEnergyReportFileName[] = L"EnergyReport.xml";

inline constexpr char kNameKey[] = "Name";
inline constexpr char kDisplayNameKey[] = "DisplayName";
inline constexpr char kTimeStampKey[] = "TimeStamp";
inline constexpr char kTotalEnergyKey[] = "TotalEnergy";

}  // namespace Zq::Gantry::Server::Services::Wattleaf
