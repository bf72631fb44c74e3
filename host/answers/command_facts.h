#pragma once

#include <algorithm>
#include <array>
#include <string_view>

#include "service/command_table.h"

namespace WattleafHost {

using Zq::Gantry::Server::Services::Wattleaf::Command;
using Zq::Gantry::Server::Services::Wattleaf::NumberOf;

/// What the host knows of one command.
struct CommandFacts {
  Command command;
  std::string_view title;
  /// The heading of the answer's chart; empty unless the answer is a series.
  std::string_view chartTitle;
  /// True if the figures come from the ledger in memory, which only a pass of the worker fills.
  bool readsLedger;
  /// True if the command may wait until a running pass has ended.
  bool waitsForPass;
};

/// All commands, in the order of kAllCommands.
inline constexpr auto kCommandFacts = std::to_array<CommandFacts>({
    {Command::kDailyAverage, "Energy of an average day, Wh", "", true, true},
    {Command::kTopApplications, "Top 20 applications", "", false, true},
    {Command::kTreesSaved, "Trees for three years of use", "", true, true},
    {Command::kLastHours, "Energy by hour", "Last 12 hours, Wh", false, true},
    {Command::kLastDays, "Energy by day", "Last 7 days, Wh", true, true},
    {Command::kLastMonths, "Energy by month", "Last 6 months, Wh", true, true},
    {Command::kPlatformSupport, "Is the platform supported?", "", false, true},
    {Command::kDataChanged, "Has the data changed?", "", false, false},
    {Command::kErrorsAndWarnings, "Errors and warnings", "", false, true},
    {Command::kDataAvailable, "Is data available?", "", false, false},
});
static_assert(std::equal(kCommandFacts.begin(), kCommandFacts.end(),
                         Zq::Gantry::Server::Services::Wattleaf::kAllCommands.begin(),
                         Zq::Gantry::Server::Services::Wattleaf::kAllCommands.end(),
                         [](const CommandFacts& facts, Command command) {
                           return facts.command == command;
                         }));

/// Null for a number that the service does not have.
[[nodiscard]] constexpr const CommandFacts* FindCommand(unsigned int number) {
  for (const CommandFacts& facts : kCommandFacts) {
    if (NumberOf(facts.command) == number) return &facts;
  }
  return nullptr;
}

/// The command's title; "unknown command" for a number that the service does not have.
[[nodiscard]] constexpr std::string_view TitleOf(unsigned int number) {
  const CommandFacts* facts = FindCommand(number);
  return facts == nullptr ? "unknown command" : facts->title;
}

}  // namespace WattleafHost
