#pragma once

#include <string>
#include <string_view>

namespace Zq::Gantry::Server::Services::Wattleaf {

inline constexpr std::wstring_view kPowerReportFailure =
    L"Error %d returned by System() call to Powerlog.xml";
inline constexpr std::wstring_view kEnergyReportFailure =
    L"Error %d returned by System() call to EnergyReport.xml";
static_assert(kPowerReportFailure.size() == 50);
static_assert(kEnergyReportFailure.size() == 54);

/// The line of the log for a tool that ended with `status`: the first `status` characters of
/// `literal`, and all of it where the status asks for more. Throws std::length_error for a negative
/// status.
std::wstring ToolFailureText(std::wstring_view literal, int status);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
