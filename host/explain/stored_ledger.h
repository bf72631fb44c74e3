#pragma once

#include <optional>

#include "explain/ledger_comparison.h"
#include "files/data_copy.h"
#include "ledger/power_ledger.h"

namespace WattleafHost {

/// The ledger's file, with the days that a pass drops because they are too old.
struct StoredLedger {
  LedgerState state = LedgerState::kAbsent;
  Zq::Gantry::Server::Services::Wattleaf::PowerLedger days;

  /// The value of a day; nothing if the file has none.
  [[nodiscard]] std::optional<float> Find(
      const Zq::Gantry::Server::Services::Wattleaf::DateTime& day) const;
};

/// Adds the ledger to the copy and reads it there.
[[nodiscard]] StoredLedger ReadStoredLedger(DataCopy& copy);

}  // namespace WattleafHost
