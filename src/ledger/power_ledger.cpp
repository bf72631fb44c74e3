#include "ledger/power_ledger.h"

#include "base/local_calendar.h"
#include "ledger/ledger_cursor.h"
#include "ledger/sample_energy.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr int kAveragedDays = 7;

class Walk {
 public:
  Walk(const LocalTime& today, PowerLedger& ledger, const LedgerDays& days)
      : today_(today),
        dayBefore_(ShiftKeepingHour(today, -kSecondsPerDay)),
        dayAfter_(ShiftKeepingHour(today, kSecondsPerDay)),
        cursor_(ledger),
        days_(days) {}

  void Visit(const LocalTime& day) {
    float& energyWh = cursor_.FindOrInsert(day);
    // Kept on purpose: a value other than 0.0 is final, and the samples of its day stay (test
    // UpdateLedger.DoesNotComputeABookedDayAndKeepsItsSamples). A new entry is 0.0.
    if (energyWh != 0.0F && day.instant != today_.instant) return;

    energyWh = FiniteOrZero(days_.energyWh(day.fields));
    if (energyWh != 0.0F && !IsTodayOrNeighbour(day)) days_.discardSamples(day.fields);
  }

 private:
  [[nodiscard]] bool IsTodayOrNeighbour(const LocalTime& day) const {
    return day.instant == today_.instant || day.instant == dayBefore_.instant ||
           day.instant == dayAfter_.instant;
  }

  const LocalTime today_;
  const LocalTime dayBefore_;
  const LocalTime dayAfter_;
  LedgerCursor<PowerLedger> cursor_;
  const LedgerDays& days_;
};

}  // namespace

DateTime OldestDay(const DateTime& today) { return ShiftKeepingHour(today, -kRetentionSeconds); }

void UpdateLedger(const DateTime& today, PowerLedger& ledger, const LedgerDays& days) {
  const std::int64_t end = InstantOf(OldestDay(today));
  LocalTime day{today, InstantOf(today)};
  Walk walk(day, ledger, days);
  for (int count = 0; count < kMostLedgerDays; ++count) {
    // All days before 1970 have the instant -1, perhaps the oldest day too: with a clock that was
    // never set the walk would not reach its end.
    if (day.instant < 0 || day.instant < end) return;
    walk.Visit(day);
    day = ShiftKeepingHour(day, -kSecondsPerDay);
  }
}

float AverageDayEnergyWh(const DateTime& today, const PowerLedger& ledger) {
  LedgerCursor cursor(ledger);
  LocalTime day{today, InstantOf(today)};
  float sumWh = 0.0F;
  for (int i = 0; i < kAveragedDays; ++i) {
    if (const float* energyWh = cursor.Find(day)) sumWh += *energyWh;
    day = ShiftKeepingHour(day, -kSecondsPerDay);
  }
  return FiniteOrZero(sumWh / static_cast<float>(kAveragedDays));
}

float TreesSaved(float averageWh) { return averageWh * 365.0F * 3.0F / 1000.0F / 300.0F; }

}  // namespace Zq::Gantry::Server::Services::Wattleaf
