#include "reports/power_store.h"

#include <array>
#include <string_view>
#include <utility>

#include "base/date_text.h"
#include "base/json_document.h"
#include "base/json_rows.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::array<std::string_view, 4> kMembers{kNameKey, kDisplayNameKey, kTimeStampKey,
                                                   kTotalEnergyKey};

/// Keeps the rows of the period.
class StoredRowCollector final : public JsonRowSink {
 public:
  explicit StoredRowCollector(const ReportingPeriod& period) : period_(period) {}

  void Begin() override { store_ = {}; }

  void Take(JsonRow row) override {
    const rapidjson::Value& timeStamp = row[2];
    const rapidjson::Value& energy = row[3];
    if (!timeStamp.IsString() || !energy.IsNumber()) return;
    const LocalTime time = times_.Read(timeStamp.GetString());
    if (!period_.Includes(time.instant)) return;
    store_.rows.push_back({IndexOf(row[0]), IndexOf(row[1]), time, StoredEnergy(energy)});
  }

  [[nodiscard]] StoredRows& Store() { return store_; }

 private:
  std::uint32_t IndexOf(const rapidjson::Value& name) {
    if (!name.IsString()) return StoredRow::kNoName;
    const auto next = static_cast<std::uint32_t>(store_.names.size());
    auto& entry = store_.indexByName.FindOrAdd({name.GetString(), name.GetStringLength()}, next);
    if (entry.second == next) store_.names.push_back(&entry.first);
    return entry.second;
  }

  const ReportingPeriod& period_;
  TimeReader times_{kTimeStampFormat};
  StoredRows store_;
};

bool WriteText(JsonWriter& writer, std::string_view text) {
  return writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

bool WriteRow(JsonWriter& writer, const PowerLogRecord& row) {
  return writer.StartObject() && writer.Key(kNameKey) && WriteText(writer, row.Name) &&
         writer.Key(kDisplayNameKey) && WriteText(writer, row.DisplayName) &&
         writer.Key(kTimeStampKey) &&
         WriteText(writer, FormatDateTime(row.TimeStamp.fields, kTimeStampFormat)) &&
         writer.Key(kTotalEnergyKey) && writer.Int64(row.TotalEnergy) && writer.EndObject();
}

}  // namespace

std::optional<StoredRows> TryReadPowerStore(const std::wstring& path,
                                            const ReportingPeriod& period) {
  StoredRowCollector collector(period);
  const JsonRowsOutcome outcome =
      ReadJsonRows(path, kMembers, collector, {kLargestPowerStoreBytes, kMostOpenStoreValues});
  if (outcome != JsonRowsOutcome::kRows) return std::nullopt;
  return std::move(collector.Store());
}

void MergePowerStore(const StoredRows& store, PowerLog& log) {
  for (const StoredRow& row : store.rows) {
    if (row.name == StoredRow::kNoName || row.displayName == StoredRow::kNoName) continue;
    // Kept on purpose: an energy is written with 64 bits and read back with its low 32 (test
    // MergePowerStoreTest.ReadsTheLow32BitsOfEnergy).
    log.Append(
        {*store.names[row.name], *store.names[row.displayName], row.time, EnergyLow32(row.energy)});
  }
}

bool WritePowerStore(const std::wstring& path, const PowerLog& log) {
  return WriteJsonFile(path, [&](JsonWriter& writer) {
    writer.StartArray();
    for (const PowerLogRecord& row : log.Records()) {
      if (!WriteRow(writer, row)) return;
    }
    writer.EndArray();
  });
}

std::int64_t StoredEnergy(const rapidjson::Value& number) {
  if (number.IsInt64()) return number.GetInt64();
  if (number.IsUint64()) return static_cast<std::int64_t>(number.GetUint64());
  constexpr double kTwoToThe63 = 9223372036854775808.0;
  const double value = number.GetDouble();
  const bool fits = value >= -kTwoToThe63 && value < kTwoToThe63;
  return fits ? static_cast<std::int64_t>(value) : 0;
}

std::int64_t EnergyLow32(std::int64_t energy) {
  return static_cast<std::int32_t>(static_cast<std::uint64_t>(energy));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
