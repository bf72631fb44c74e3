#pragma once

#include <array>
#include <cstddef>
#include <optional>

// The numbers and statuses of ExecuteCommand: the contract with the clients, which pass a number
// and receive a text. The dispatcher and the console host share this table. It has values only and
// may be used on any thread.
namespace Zq::Gantry::Server::Services::Wattleaf {

// Statuses. A client sees them as signed 32-bit integers.

/// The command produced a text, and it was handed over.
inline constexpr int kResultHandedOver = 0;
/// No command has this number.
inline constexpr int kUnknownCommand = 0x20000001;
/// The input or the output pointer was null, memory ran out, or the command produced no text or one
/// that is too long to hand over.
inline constexpr int kNoResult = 0x20000002;

/// The longest text that is handed over, in wide characters with its terminator.
inline constexpr std::size_t kLargestResultChars = 65536;

/// The commands by their numbers. Each comment describes the text that is returned.
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
