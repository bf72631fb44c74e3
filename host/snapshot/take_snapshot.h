#pragma once

#include <string>

#include "snapshot/snapshot.h"

namespace WattleafHost {

/// What a snapshot is taken of.
struct SnapshotRequest {
  std::wstring dataFolder;
  unsigned int days = 30;  ///< how many days the ranking covers
  /// Where an icon for each application is written; empty for no icons.
  std::wstring iconFolder;
};

/// Reads copies of the ledger, the store and the samples of today and yesterday; the data folder
/// stays as it is. Asks the firmware and WMI whether the machine is supported, which blocks.
/// Throws FileFailure if the files cannot be copied.
[[nodiscard]] Snapshot TakeSnapshot(const SnapshotRequest& request);

}  // namespace WattleafHost
