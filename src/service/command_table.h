#pragma once

#include <array>
#include <cstddef>
#include <optional>

// The numbers and statuses of ExecuteCommand: the contract with the clients, which pass a number
// and get a text. The dispatcher and the console host use this table.
namespace Zq::Gantry::Server::Services::Wattleaf {

// Statuses. A client sees them as signed 32-bit integers.

/// The caller got the command's text.
inline constexpr int kResultHandedOver = 0;
/// No command has this number.
inline constexpr int kUnknownCommand = 0x20000001;
/// The input or the output was null, the command has no text or a text that is too long, or there
/// is no memory for it.
inline constexpr int kNoResult = 0x20000002;

/// The longest text that is returned, its terminator included, in wide characters.
inline constexpr std::size_t kLargestResultChars = 65536;

/// The numbers that clients pass. Each comment describes the text that is returned.
enum class Command : unsigned int {
  kDailyAverage = 1,       ///< watt-hours a day, as "12.345678"
  kTopApplications = 2,    ///< JSON; the only command that reads its input: "<icon folder>?<days>"
  kTreesSaved = 3,         ///< a number, as "12.345678"
  kLastHours = 4,          ///< JSON, twelve values in watt-hours
  kLastDays = 5,           ///< JSON, seven values in watt-hours
  kLastMonths = 6,         ///< JSON, six values in watt-hours
  kPlatformSupport = 7,    ///< "1" supported, "0" not supported, "-1" firmware update required
  kDataChanged = 8,        ///< "true" or "false"
  kErrorsAndWarnings = 9,  ///< a JSON array, always empty
  kDataAvailable = 10,     ///< "true" or "false"
};

/// All commands in the order of their numbers, which have no gaps.
inline constexpr std::array kAllCommands{
    Command::kDailyAverage,    Command::kTopApplications, Command::kTreesSaved,
    Command::kLastHours,       Command::kLastDays,        Command::kLastMonths,
    Command::kPlatformSupport, Command::kDataChanged,     Command::kErrorsAndWarnings,
    Command::kDataAvailable,
};

/// The number that a client passes for a command.
[[nodiscard]] constexpr unsigned int NumberOf(Command command) {
  return static_cast<unsigned int>(command);
}

inline constexpr unsigned int kFirstCommand = NumberOf(kAllCommands.front());
inline constexpr unsigned int kLastCommand = NumberOf(kAllCommands.back());
static_assert(kLastCommand - kFirstCommand + 1 == kAllCommands.size());

/// The command with this number; empty for a number outside the table.
[[nodiscard]] constexpr std::optional<Command> TryCommand(unsigned int number) {
  if (number < kFirstCommand || number > kLastCommand) return std::nullopt;
  return kAllCommands[number - kFirstCommand];
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
