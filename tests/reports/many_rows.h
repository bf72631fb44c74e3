#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "base/calendar.h"

// Reports and stores of any number of rows, for measurements.
namespace TestSupport {

/// 2026-11-14 at 10:30:15, the end of the period in which the rows lie.
Zq::Gantry::Server::Services::Wattleaf::DateTime EndOfManyRows();

/// `count` rows of 400 applications, executables and packages in turn, no two of one identity; none
/// of the store is in the report. At most 400,000 rows.
std::string ReportOfManyRows(std::size_t count);
std::string StoreOfManyRows(std::size_t count);

/// A report and a store of that many rows each, written to a folder.
void WriteManyRows(const std::filesystem::path& folder, std::size_t count);

/// Folds the folder's report into its store; how many rows the store holds then.
std::size_t FoldReport(const std::filesystem::path& folder);

}  // namespace TestSupport
