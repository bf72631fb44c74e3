#pragma once

#include <vector>

#include "reports/power_log.h"

namespace TestSupport {

/// The rows of a log in order of insertion. Their names are those of the log.
[[nodiscard]] inline std::vector<Zq::Gantry::Server::Services::Wattleaf::PowerLogRecord> RowsOf(
    const Zq::Gantry::Server::Services::Wattleaf::PowerLog& log) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  std::vector<PowerLogRecord> rows;
  log.ForEach([&rows](const PowerLogRecord& row) { rows.push_back(row); });
  return rows;
}

}  // namespace TestSupport
