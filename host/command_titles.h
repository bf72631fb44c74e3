#pragma once

#include <string_view>

namespace WattleafHost {

/// What a command is, for people; "unknown command" for a number that the service does not have.
std::string_view TitleOf(unsigned int number);

/// The heading of the chart of commands 4 to 6; empty for the others.
std::string_view ChartTitleOf(unsigned int number);

/// True for the figures that come from the ledger in memory, which only a pass of the worker fills.
bool ReadsLedger(unsigned int number);

}  // namespace WattleafHost
