#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/date_text.h"
#include "base/json_document.h"
#include "base/local_calendar.h"
#include "ledger/power_ledger.h"
#include "ledger/sample_energy.h"

// The ledger as it is described: each day by a look-up in the map, and the file as a document. What
// the product does by rows and by a cursor must give the same to the last bit.
namespace TestSupport {

namespace Wattleaf = Zq::Gantry::Server::Services::Wattleaf;

inline void LiteralLoad(const std::wstring& path, const Wattleaf::DateTime& oldest,
                        Wattleaf::PowerLedger& ledger) {
  using namespace Wattleaf;
  const std::unique_ptr<GenericDocument> document(LoadJsonDocument(path));
  if (!document || !document->IsArray()) return;
  for (const rapidjson::Value& element : document->GetArray()) {
    const rapidjson::Value* key = TryStringMember(element, "Key");
    const rapidjson::Value* value = TryNumberMember(element, "Value");
    if (key == nullptr || value == nullptr) continue;
    DateTime day;
    ParseDateTime(day, key->GetString(), kDateFormat);
    if (oldest < day) ledger[day] = NarrowToFloat(value->GetDouble());
  }
}

inline bool LiteralSave(const std::wstring& path, const Wattleaf::PowerLedger& ledger) {
  using namespace Wattleaf;
  GenericDocument document(rapidjson::kArrayType);
  auto& allocator = document.GetAllocator();
  for (const auto& [day, energyWh] : ledger) {
    const std::string date = FormatDateTime(day, kDateFormat);
    rapidjson::Value key(date.c_str(), static_cast<rapidjson::SizeType>(date.size()), allocator);
    rapidjson::Value element(rapidjson::kObjectType);
    element.AddMember("Key", key, allocator);
    element.AddMember("Value", static_cast<double>(energyWh), allocator);
    document.PushBack(element, allocator);
  }
  return SaveJsonDocument(path, document);
}

inline bool LiteralHolds(const std::wstring& path, const Wattleaf::PowerLedger& ledger) {
  const std::unique_ptr<Wattleaf::GenericDocument> document(Wattleaf::LoadJsonDocument(path));
  return document && document->IsArray() && document->Size() == ledger.size();
}

inline void LiteralUpdate(const Wattleaf::DateTime& today, Wattleaf::PowerLedger& ledger,
                          const Wattleaf::LedgerDays& days) {
  using namespace Wattleaf;
  const std::int64_t neighbours[] = {InstantOf(today),
                                     InstantOf(ShiftKeepingHour(today, -kSecondsPerDay)),
                                     InstantOf(ShiftKeepingHour(today, kSecondsPerDay))};
  const std::int64_t end = InstantOf(OldestDay(today));
  DateTime day = today;
  for (int count = 0; count < kMostLedgerDays; ++count) {
    const std::int64_t instant = InstantOf(day);
    if (instant < 0 || instant < end) return;
    const auto [entry, isNew] = ledger.try_emplace(day, 0.0F);
    if (isNew || instant == neighbours[0] || entry->second == 0.0F) {
      entry->second = FiniteOrZero(days.energyWh(day));
      const bool isNear =
          instant == neighbours[0] || instant == neighbours[1] || instant == neighbours[2];
      if (entry->second != 0.0F && !isNear) days.discardSamples(day);
    }
    day = ShiftKeepingHour(day, -kSecondsPerDay);
  }
}

inline float LiteralAverage(const Wattleaf::DateTime& today, const Wattleaf::PowerLedger& ledger) {
  using namespace Wattleaf;
  float sumWh = 0.0F;
  DateTime day = today;
  for (int i = 0; i < 7; ++i) {
    const auto entry = ledger.find(day);
    if (entry != ledger.end()) sumWh += entry->second;
    day = ShiftKeepingHour(day, -kSecondsPerDay);
  }
  return FiniteOrZero(sumWh / 7.0F);
}

using Fields = std::array<std::int32_t, 9>;

/// All fields of each key and the bits of each value, in the order of the map.
[[nodiscard]] inline std::vector<std::pair<Fields, std::uint32_t>> BitsOf(
    const Wattleaf::PowerLedger& ledger) {
  std::vector<std::pair<Fields, std::uint32_t>> bits;
  for (const auto& [day, energyWh] : ledger) {
    bits.emplace_back(std::bit_cast<Fields>(day), std::bit_cast<std::uint32_t>(energyWh));
  }
  return bits;
}

}  // namespace TestSupport
