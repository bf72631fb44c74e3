#pragma once

#include "base/json_document.h"
#include "reports/power_log.h"
#include "reports/reporting_period.h"

// The 30-day store, "Powerlog.json"; docs/formats/powerlog-json.md.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// How far back the store reaches: 2592000 seconds.
inline constexpr std::int32_t kPowerStoreDays = 30;

/// Appends the rows of the period whose identity `log` does not hold yet. A root that is no array
/// holds no rows; a row that lacks a member is dropped, and one of another type counts as missing.
void MergePowerStore(const GenericDocument& store, const ReportingPeriod& period, PowerLog& log);

/// The document for the file. It refers to the names in `log`, which must outlive it.
GenericDocument PowerStoreDocument(const PowerLog& log);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
