#pragma once

#include <cstddef>

// What a JSON file of the data folder may contain. Any user may have put a file there, so a file
// that exceeds one of the limits counts as unreadable.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// The largest file that is read.
inline constexpr std::size_t kLargestDataFileBytes = std::size_t{64} * 1024 * 1024;
/// Arrays and objects inside each other, the outermost included. The parser recurses.
inline constexpr int kDeepestJsonNesting = 64;
/// Values and member names together. RapidJSON's pools do not survive a failed allocation.
inline constexpr std::size_t kMostJsonValues = 8'000'000;
/// The longest string, in bytes as spelled in the file: the parser collects each string in one
/// block, which it enlarges by half when it is full.
inline constexpr std::size_t kLongestJsonStringBytes = std::size_t{16} * 1024 * 1024;
/// The digits of an exponent, leading zeros included. The parser adds an exponent to the number of
/// decimal places; a longer one makes the sum overflow, and the sum is then an index into a table.
inline constexpr int kMostExponentDigits = 9;

/// The limits that depend on the file.
struct JsonLimits {
  std::size_t fileBytes = kLargestDataFileBytes;
  /// Values and member names in arrays and objects that have not ended yet.
  std::size_t openValues = kMostJsonValues;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
