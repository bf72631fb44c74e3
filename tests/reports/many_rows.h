#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "base/calendar.h"

// Reports and stores with any number of rows, for measurements.
namespace TestSupport {

/// 2026-11-14 at 10:30:15, the end of the period of the rows.
[[nodiscard]] Zq::Gantry::Server::Services::Wattleaf::DateTime EndOfManyRows();

/// `count` rows of 400 applications, executables and packages in turn. No two rows have one
/// identity, and no row of the store is in the report. At most 400,000 rows. In the store each
/// application has its own display name, "Application 0" to "Application 399".
[[nodiscard]] std::string ReportOfManyRows(std::size_t count);
[[nodiscard]] std::string StoreOfManyRows(std::size_t count);

/// Writes a report and a store of `count` rows each to a folder.
void WriteManyRows(const std::filesystem::path& folder, std::size_t count);

/// Merges the folder's report into its store and returns the number of rows of the new store.
[[nodiscard]] std::size_t FoldReport(const std::filesystem::path& folder);

}  // namespace TestSupport
