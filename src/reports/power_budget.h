#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "base/json_limits.h"

// The memory and file sizes that one pass over the report and the store may take. The sum stays
// below 1 GiB; docs/decisions/reports.md, "Budget", has the arithmetic.
namespace Zq::Gantry::Server::Services::Wattleaf {

inline constexpr std::size_t kBytesPerMebibyte = std::size_t{1024} * 1024;

/// A larger store counts as unreadable, and none is written.
inline constexpr std::size_t kLargestPowerStoreBytes = 128 * kBytesPerMebibyte;

/// A row of the store is nine JSON values (an object, four names, four values), the array is one.
inline constexpr std::size_t kJsonValuesPerRow = 9;
inline constexpr std::size_t kMostPowerStoreRows = (kMostJsonValues - 1) / kJsonValuesPerRow;
static_assert(kMostPowerStoreRows == 888'888);

/// JSON values open at one time while the store is read: its rows, and the values of one row.
inline constexpr std::size_t kMostOpenStoreValues = 1'000'000;
static_assert(kMostOpenStoreValues > 1 + kMostPowerStoreRows + kJsonValuesPerRow);

/// A larger row is dropped, so that each of its names is short enough to be read back.
inline constexpr std::size_t kLargestPowerStoreRowBytes = kLongestJsonStringBytes;

/// A report whose text and tree may need more counts as one that does not parse.
inline constexpr std::size_t kMostReportTreeBytes = 576 * kBytesPerMebibyte;

/// Display names that one conversion remembers. Further names are looked up for each row.
inline constexpr std::size_t kMostRememberedNameBytes = 32 * kBytesPerMebibyte;

/// The limits of a store. The default is what the next pass can read back.
struct PowerStoreLimits {
  std::size_t rows = kMostPowerStoreRows;
  std::size_t rowBytes = kLargestPowerStoreRowBytes;
  std::size_t fileBytes = kLargestPowerStoreBytes;
};

/// The bytes of a text in the store's file, without its quotes.
[[nodiscard]] std::size_t WrittenBytes(std::string_view text);

/// The bytes of a row in the store's file, including the comma or bracket after it, from the
/// WrittenBytes of its names. The energy is counted with its longest text, since it changes while
/// rows of one identity are added up.
[[nodiscard]] std::size_t StoredRowBytes(std::size_t nameBytes, std::size_t displayNameBytes);

/// An upper bound of the bytes of a report of this length and its copy in the parser's characters.
[[nodiscard]] std::uint64_t MostReportTextBytes(std::uint64_t fileBytes);

/// An upper bound of the bytes that exist at one time while the parser reads this text, in any
/// encoding: the text itself, its copy in the parser's characters, and the tree.
[[nodiscard]] std::uint64_t MostReportTreeBytes(std::string_view text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
