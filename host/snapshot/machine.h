#pragma once

#include <string>

namespace WattleafHost {

/// The computer's name in UTF-8; empty if the system does not say it.
[[nodiscard]] std::string ComputerName();

/// The system's name of its time zone, the same in every language: "W. Europe Standard Time".
/// UTF-8; may be empty.
[[nodiscard]] std::string ZoneName();

}  // namespace WattleafHost
