#include "ledger/power_ledger.h"

#include <string>

#include "base/date_text.h"
#include "base/json_document.h"
#include "base/local_calendar.h"
#include "ledger/sample_energy.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr char kDayKey[] = "Key";
constexpr char kEnergyKey[] = "Value";
constexpr int kAveragedDays = 7;

class Walk {
 public:
  Walk(const DateTime& today, PowerLedger& ledger, const LedgerDays& days)
      : today_(today),
        dayBefore_(ShiftKeepingHour(today, -kSecondsPerDay)),
        dayAfter_(ShiftKeepingHour(today, kSecondsPerDay)),
        ledger_(ledger),
        days_(days) {}

  void Visit(const DateTime& day) {
    const auto [entry, isNew] = ledger_.try_emplace(day, 0.0F);
    // Kept on purpose: a value other than 0.0 is final, and the samples of its day stay (test
    // UpdateLedger.DoesNotComputeABookedDayAndKeepsItsSamples).
    if (!isNew && !IsSameDay(day, today_) && entry->second != 0.0F) return;

    entry->second = FiniteOrZero(days_.energyWh(day));
    if (entry->second != 0.0F && !IsTodayOrNeighbour(day)) days_.discardSamples(day);
  }

 private:
  static bool IsSameDay(const DateTime& left, const DateTime& right) {
    return InstantOf(left) == InstantOf(right);
  }

  bool IsTodayOrNeighbour(const DateTime& day) const {
    return IsSameDay(day, today_) || IsSameDay(day, dayBefore_) || IsSameDay(day, dayAfter_);
  }

  const DateTime today_;
  const DateTime dayBefore_;
  const DateTime dayAfter_;
  PowerLedger& ledger_;
  const LedgerDays& days_;
};

void LoadElement(const rapidjson::Value& element, const DateTime& oldest, PowerLedger& ledger) {
  const rapidjson::Value* key = TryStringMember(element, kDayKey);
  const rapidjson::Value* value = TryNumberMember(element, kEnergyKey);
  if (key == nullptr || value == nullptr) return;

  // A text that is not a date becomes a time before 1970, which is before `oldest` too.
  DateTime day;
  ParseDateTime(day, key->GetString(), kDateFormat);
  if (oldest < day) ledger[day] = NarrowToFloat(value->GetDouble());
}

}  // namespace

DateTime OldestDay(const DateTime& today) { return ShiftKeepingHour(today, -kRetentionSeconds); }

void LoadLedger(const GenericDocument& document, const DateTime& oldest, PowerLedger& ledger) {
  if (!document.IsArray()) return;
  for (const rapidjson::Value& element : document.GetArray()) LoadElement(element, oldest, ledger);
}

void UpdateLedger(const DateTime& today, PowerLedger& ledger, const LedgerDays& days) {
  Walk walk(today, ledger, days);
  const std::int64_t end = InstantOf(OldestDay(today));
  DateTime day = today;
  for (int count = 0; count < kMostLedgerDays; ++count) {
    // All days before 1970 have the instant -1, perhaps the oldest day too: with a clock that was
    // never set the walk would not reach its end.
    const std::int64_t instant = InstantOf(day);
    if (instant < 0 || instant < end) return;
    walk.Visit(day);
    day = ShiftKeepingHour(day, -kSecondsPerDay);
  }
}

GenericDocument LedgerDocument(const PowerLedger& ledger) {
  GenericDocument document(rapidjson::kArrayType);
  auto& allocator = document.GetAllocator();
  for (const auto& [day, energyWh] : ledger) {
    const std::string date = FormatDateTime(day, kDateFormat);
    rapidjson::Value key(date.c_str(), static_cast<rapidjson::SizeType>(date.size()), allocator);
    rapidjson::Value element(rapidjson::kObjectType);
    element.AddMember(rapidjson::StringRef(kDayKey), key, allocator);
    element.AddMember(rapidjson::StringRef(kEnergyKey), static_cast<double>(energyWh), allocator);
    document.PushBack(element, allocator);
  }
  return document;
}

float AverageDayEnergyWh(const DateTime& today, const PowerLedger& ledger) {
  float sumWh = 0.0F;
  DateTime day = today;
  for (int i = 0; i < kAveragedDays; ++i) {
    const auto entry = ledger.find(day);
    if (entry != ledger.end()) sumWh += entry->second;
    day = ShiftKeepingHour(day, -kSecondsPerDay);
  }
  return FiniteOrZero(sumWh / static_cast<float>(kAveragedDays));
}

float TreesSaved(float averageWh) { return averageWh * 365.0F * 3.0F / 1000.0F / 300.0F; }

}  // namespace Zq::Gantry::Server::Services::Wattleaf
