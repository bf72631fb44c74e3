#pragma once

#include <string>

#include "base/calendar.h"
#include "doctor/machine_facts.h"
#include "reports/display_names.h"
#include "reports/power_store.h"

namespace WattleafHost {

/// Reads a report of the energy tool, which exists and is a plain file, as a pass does at the time
/// `now`.
[[nodiscard]] ReportFacts ReadReportFacts(
    const std::wstring& path, const Zq::Gantry::Server::Services::Wattleaf::DateTime& now,
    Zq::Gantry::Server::Services::Wattleaf::DisplayNames& names);

/// Counts the rows of the store, and collects the programs without a name and with several.
void CountStoreRows(const Zq::Gantry::Server::Services::Wattleaf::StoredRows& store,
                    StoreFacts& facts);

}  // namespace WattleafHost
