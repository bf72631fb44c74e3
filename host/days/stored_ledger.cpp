#include "days/stored_ledger.h"

#include <array>
#include <string_view>

#include "base/json_rows.h"
#include "ledger/ledger_file.h"

namespace WattleafHost {

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;

class IgnoringSink final : public JsonRowSink {
 public:
  void Take(JsonRow) override {}
};

bool IsJsonList(const std::wstring& path) {
  constexpr std::array<std::string_view, 1> kMembers{"Key"};
  IgnoringSink sink;
  return ReadJsonRows(path, kMembers, sink) == JsonRowsOutcome::kRows;
}

/// The second day of the calendar: the ledger's reader drops days up to the one that it gets.
DateTime EarliestDay() {
  DateTime day;
  day.tm_mday = 2;
  day.tm_year = 70;
  return day;
}

}  // namespace

std::optional<float> StoredLedger::Find(const DateTime& day) const {
  const auto found = days.find(day);
  if (found == days.end()) return std::nullopt;
  return found->second;
}

StoredLedger ReadStoredLedger(DataCopy& copy) { return ReadStoredLedger(copy, EarliestDay()); }

StoredLedger ReadStoredLedger(DataCopy& copy, const DateTime& oldest) {
  StoredLedger ledger;
  if (!copy.Add(kLedgerFileName)) {
    if (copy.FindLeftOut(kLedgerFileName)) ledger.state = LedgerState::kLeftOut;
    return ledger;
  }
  const std::wstring path = copy.File(kLedgerFileName);
  ledger.state = IsJsonList(path) ? LedgerState::kRead : LedgerState::kUnreadable;
  LoadLedger(path, oldest, ledger.days);
  return ledger;
}

}  // namespace WattleafHost
