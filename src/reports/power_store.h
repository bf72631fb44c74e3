#pragma once

#include <rapidjson/document.h>

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "reports/name_table.h"
#include "reports/power_log.h"
#include "reports/row_time.h"

// The 30-day store, "Powerlog.json"; docs/formats/powerlog-json.md.
namespace Zq::Gantry::Server::Services::Wattleaf {

inline constexpr wchar_t kPowerStoreFileName[] = L"Powerlog.json";

// The members of a row, in this order.
inline constexpr char kNameKey[] = "Name";
inline constexpr char kDisplayNameKey[] = "DisplayName";
inline constexpr char kTimeStampKey[] = "TimeStamp";
inline constexpr char kTotalEnergyKey[] = "TotalEnergy";

/// How far back the store reaches: 2592000 seconds.
inline constexpr std::int32_t kPowerStoreDays = 30;

/// A row of the store that has an energy and a time of the period.
struct StoredRow {
  static constexpr std::uint32_t kNoName = 0xFFFFFFFF;

  std::uint32_t name = kNoName;         ///< an index of StoredRows::names
  std::uint32_t displayName = kNoName;  ///< the same
  RowTime time;
  std::int64_t energy = 0;  ///< all 64 bits; see StoredEnergy
};

/// Rows of a store in the order of its file. Every name and display name is kept once.
struct StoredRows {
  std::deque<StoredRow> rows;
  std::vector<const std::string*> names;  ///< owned by `indexByName`
  NameTable<std::uint32_t> indexByName;
};

/// Reads the rows of the period. An element without an energy or a time of the right type is
/// skipped, and a name of another type counts as missing; of several members with one name the
/// first counts. Empty if the file is not JSON, exceeds a limit of power_budget.h, or has another
/// root than an array. A link is followed.
[[nodiscard]] std::optional<StoredRows> TryReadPowerStore(const std::wstring& path,
                                                          const ReportingPeriod& period);

/// Appends the rows that have both names and whose identity is not in `log` yet.
void MergePowerStore(const StoredRows& store, PowerLog& log);

/// Writes the rows of the log to a file, in place. False if the file cannot be opened for writing,
/// or is a folder or a link; a write that fails later is not reported.
[[nodiscard]] bool WritePowerStore(const std::wstring& path, const PowerLog& log);

/// A JSON number as a whole number. The 64 bits of an unsigned number above the signed range are
/// reinterpreted, and a fraction is truncated. 0 if 64 bits cannot hold the number.
[[nodiscard]] std::int64_t StoredEnergy(const rapidjson::Value& number);

/// The low 32 bits of an energy, read as signed.
[[nodiscard]] std::int64_t EnergyLow32(std::int64_t energy);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
