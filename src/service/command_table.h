#pragma once

#include <cstddef>

namespace Zq::Gantry::Server::Services::Wattleaf {

// Statuses of ExecuteCommand; 0 means that a result was handed over.
inline constexpr int kUnknownCommand = 0x20000001;
inline constexpr int kNoResult = 0x20000002;

/// A result crosses only if its length plus one is at most this, in wide characters.
inline constexpr std::size_t kLargestResultChars = 65536;

/// The numbers by which clients ask.
enum class Command : unsigned int {
  kDailyAverage = 1,
  kTopApplications = 2,
  kTreesSaved = 3,
  kLastHours = 4,
  kLastDays = 5,
  kLastMonths = 6,
  kPlatformSupport = 7,
  kDataChanged = 8,
  kErrorsAndWarnings = 9,
  kDataAvailable = 10,
};
inline constexpr unsigned int kFirstCommand = 1;
inline constexpr unsigned int kLastCommand = 10;

}  // namespace Zq::Gantry::Server::Services::Wattleaf
