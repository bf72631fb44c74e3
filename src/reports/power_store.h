#pragma once

#include <rapidjson/document.h>

#include <cstdint>

#include "base/json_document.h"
#include "reports/power_log.h"

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

/// Appends the rows of the period whose identity is not in `log` yet. A root that is not an array
/// has no rows. A row that lacks a member, or has one of another type, is dropped.
void MergePowerStore(const GenericDocument& store, const ReportingPeriod& period, PowerLog& log);

/// The document for the file. It refers to the names in `log`, which must outlive it.
[[nodiscard]] GenericDocument PowerStoreDocument(const PowerLog& log);

/// A JSON number as a whole number. The 64 bits of an unsigned number above the signed range are
/// reinterpreted, and a fraction is truncated. 0 if 64 bits cannot hold the number.
[[nodiscard]] std::int64_t StoredEnergy(const rapidjson::Value& number);

/// The low 32 bits of StoredEnergy(number), read as signed.
[[nodiscard]] std::int64_t StoredEnergyLow32(const rapidjson::Value& number);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
