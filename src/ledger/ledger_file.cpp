#include "ledger/ledger_file.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

#include "base/date_text.h"
#include "base/json_document.h"
#include "base/json_rows.h"
#include "base/local_calendar.h"
#include "base/time_reader.h"
#include "ledger/ledger_cursor.h"
#include "ledger/sample_energy.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::string_view kDayKey = "Key";
constexpr std::string_view kEnergyKey = "Value";

struct BookedDay {
  LocalTime day;
  float energyWh = 0.0F;
};

/// Collects the days after `oldest`, in the order of the file.
class BookedDays : public JsonRowSink {
 public:
  explicit BookedDays(const DateTime& oldest) : oldest_(InstantOf(oldest)) {}

  void Take(JsonRow row) override {
    const rapidjson::Value& key = row[0];
    const rapidjson::Value& value = row[1];
    if (!key.IsString() || !value.IsNumber()) return;
    // A text that is not a date becomes a time before 1970, which is before `oldest` too.
    const LocalTime day = times_.Read(key.GetString());
    if (oldest_ < day.instant) days.push_back({day, NarrowToFloat(value.GetDouble())});
  }

  std::vector<BookedDay> days;

 private:
  const std::int64_t oldest_;
  TimeReader times_{kDateFormat};
};

class RowCount : public JsonRowSink {
 public:
  void Take(JsonRow) override { ++count; }

  std::size_t count = 0;
};

std::int64_t InstantOfDay(const BookedDay& booked) { return booked.day.instant; }

/// Of several elements for one day the first is the key that is entered, and the last the value.
void Enter(std::vector<BookedDay>& days, PowerLedger& ledger) {
  if (!std::ranges::is_sorted(days, {}, InstantOfDay)) {
    std::ranges::stable_sort(days, {}, InstantOfDay);
  }
  LedgerCursor cursor(ledger);
  // Backwards: the map compares least when it inserts before its first entry.
  for (auto last = days.end(); last != days.begin();) {
    auto first = std::prev(last);
    while (first != days.begin() && std::prev(first)->day.instant == first->day.instant) --first;
    cursor.FindOrInsert(first->day) = std::prev(last)->energyWh;
    last = first;
  }
}

}  // namespace

void LoadLedger(const std::wstring& path, const DateTime& oldest, PowerLedger& ledger) {
  static constexpr std::array<std::string_view, 2> kNames{kDayKey, kEnergyKey};
  BookedDays booked(oldest);
  if (ReadJsonRows(path, kNames, booked) != JsonRowsOutcome::kRows) return;
  Enter(booked.days, ledger);
}

bool SaveLedger(const std::wstring& path, const PowerLedger& ledger) {
  return WriteJsonFile(path, [&](JsonWriter& writer) {
    DateBuffer buffer;
    writer.StartArray();
    for (const auto& [day, energyWh] : ledger) {
      const std::string_view date = WriteDate(day, buffer);
      writer.StartObject();
      writer.Key(kDayKey.data(), static_cast<rapidjson::SizeType>(kDayKey.size()));
      writer.String(date.data(), static_cast<rapidjson::SizeType>(date.size()));
      writer.Key(kEnergyKey.data(), static_cast<rapidjson::SizeType>(kEnergyKey.size()));
      writer.Double(static_cast<double>(energyWh));
      writer.EndObject();
    }
    writer.EndArray();
  });
}

bool HoldsLedger(const std::wstring& path, const PowerLedger& ledger) {
  RowCount rows;
  return ReadJsonRows(path, {}, rows) == JsonRowsOutcome::kRows && rows.count == ledger.size();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
