#pragma once

#include <cstddef>

#include "base/guarded_json_stream.h"
#include "base/json_document.h"

// What one pass over the report and the store may take. The sum stays below 1 GiB; it is worked out
// in docs/decisions/reports.md, "Budget".
namespace Zq::Gantry::Server::Services::Wattleaf {

inline constexpr std::size_t kBytesPerMebibyte = 1024U * 1024;

/// A larger store counts as unreadable, and none is written.
inline constexpr std::size_t kLargestPowerStoreBytes = 128 * kBytesPerMebibyte;

/// A row of the store is nine JSON values (an object, four names, four values), the array is one.
inline constexpr std::size_t kJsonValuesPerRow = 9;
inline constexpr std::size_t kMostPowerStoreRows = (kMostJsonValues - 1) / kJsonValuesPerRow;
static_assert(kMostPowerStoreRows == 888'888);

/// While the store is read, its rows and the values of one row are open at a time.
inline constexpr std::size_t kMostOpenStoreValues = 1'000'000;
static_assert(kMostOpenStoreValues > 1 + kMostPowerStoreRows + kJsonValuesPerRow);

/// A row of more bytes is dropped, so that each of its names is short enough to be read.
inline constexpr std::size_t kLargestPowerStoreRowBytes = kLongestJsonStringBytes;

/// A report whose text and tree may need more counts as one that does not parse.
inline constexpr std::size_t kMostReportTreeBytes = 576 * kBytesPerMebibyte;

/// Display names that one conversion remembers; further ones are looked up for each row.
inline constexpr std::size_t kMostRememberedNameBytes = 32 * kBytesPerMebibyte;

/// What the rows of a store may come to; the default is what the next pass can read.
struct PowerStoreLimits {
  std::size_t rows = kMostPowerStoreRows;
  std::size_t rowBytes = kLargestPowerStoreRowBytes;
  std::size_t fileBytes = kLargestPowerStoreBytes;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
