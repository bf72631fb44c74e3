#pragma once

#include <string>

#include "base/calendar.h"
#include "ledger/power_ledger.h"

// The ledger on disk (docs/formats/power-consumption-json.md): an array of objects
// {"Key":"2024-03-01","Value":12.5} in ascending order of date. The file is read and written row by
// row; others can write it, so it may have a million rows of any kind.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// The ledger's file in the data folder.
inline constexpr wchar_t kLedgerFileName[] = L"PowerConsumption.json";

/// Copies the days after `oldest` from the file into `ledger`; of several elements for one day the
/// last one counts. Skips elements without a string "Key" or a number "Value". Changes nothing if
/// the file cannot be read or is not an array.
void LoadLedger(const std::wstring& path, const DateTime& oldest, PowerLedger& ledger);

/// Writes the file in place. False if it cannot be opened for writing; a write that fails later is
/// not reported.
[[nodiscard]] bool SaveLedger(const std::wstring& path, const PowerLedger& ledger);

/// Whether the file is an array of as many elements as the ledger has days: a write that failed
/// half-way left a file that cannot be read.
[[nodiscard]] bool HoldsLedger(const std::wstring& path, const PowerLedger& ledger);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
