#pragma once

#include <string>
#include <string_view>

// The operating system's energy tool: its command lines, the files it writes into the data folder,
// and the log lines for its failures.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// The energy of each application; read by ReadPowerReport and then deleted.
inline constexpr wchar_t kPowerReportFileName[] = L"Powerlog.xml";

// The tool is found through the search path. The names of its output files are relative, so it
// writes them into the current directory (RunReportTool).
inline constexpr char kPowerReportCommand[] = "POWERCFG /SRUMUTIL /OUTPUT Powerlog.xml /XML";
inline constexpr char kEnergyReportCommand[] =
    "POWERCFG /ENERGY /OUTPUT EnergyReport.xml /DURATION 60 /XML";

// The `literal` of ToolFailureText for each command.
inline constexpr std::wstring_view kPowerReportFailure =
    L"Error %d returned by System() call to Powerlog.xml";
inline constexpr std::wstring_view kEnergyReportFailure =
    L"Error %d returned by System() call to EnergyReport.xml";
static_assert(kPowerReportFailure.size() == 50);
static_assert(kEnergyReportFailure.size() == 54);

/// The log line for a tool that ended with `status`: the first `status` characters of `literal`, or
/// all of it if the status is larger. Throws std::length_error for a negative status.
[[nodiscard]] std::wstring ToolFailureText(std::wstring_view literal, int status);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
