#pragma once

namespace Zq::Gantry::Server::Services::Wattleaf {

// The operating system's tool is found through the search path; its output names are relative.
inline constexpr char kPowerReportCommand[] = "POWERCFG /SRUMUTIL /OUTPUT Powerlog.xml /XML";
inline constexpr char kEnergyReportCommand[] =
    "POWERCFG /ENERGY /OUTPUT EnergyReport.xml /DURATION 60 /XML";

/// Makes `folder` the current directory of the whole process, for good, then hands `commandLine` to
/// the command interpreter and waits for its end. Gives the exit status; 0 means success. A
/// directory that cannot be entered is not told: the tool then runs in the one before.
///
/// For the time of the call the current directory is no place where programs are looked for: users
/// may write there.
int RunReportTool(const wchar_t* folder, const char* commandLine);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
