#pragma once

#include <optional>

#include "files/data_copy.h"
#include "ledger/power_ledger.h"

namespace WattleafHost {

/// What the ledger's file is.
enum class LedgerState { kAbsent, kLeftOut, kUnreadable, kRead };

/// The ledger's file.
struct StoredLedger {
  LedgerState state = LedgerState::kAbsent;
  Zq::Gantry::Server::Services::Wattleaf::PowerLedger days;

  /// The value of a day; nothing if the file has none.
  [[nodiscard]] std::optional<float> Find(
      const Zq::Gantry::Server::Services::Wattleaf::DateTime& day) const;
};

/// Adds the ledger to the copy and reads it there, with the days that a pass drops because they are
/// too old.
[[nodiscard]] StoredLedger ReadStoredLedger(DataCopy& copy);
/// The same with the days after `oldest` only.
[[nodiscard]] StoredLedger ReadStoredLedger(
    DataCopy& copy, const Zq::Gantry::Server::Services::Wattleaf::DateTime& oldest);

}  // namespace WattleafHost
