#include "reports/power_store.h"

#include <array>
#include <charconv>
#include <cstdio>
#include <string_view>
#include <utility>

#include "base/date_text.h"
#include "base/json_memory.h"
#include "base/json_rows.h"
#include "base/wide_file.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::array<std::string_view, 4> kMembers{kNameKey, kDisplayNameKey, kTimeStampKey,
                                                   kTotalEnergyKey};

/// Keeps the rows of the period.
class StoredRowCollector final : public JsonRowSink {
 public:
  explicit StoredRowCollector(const ReportingPeriod& period) : period_(period) {}

  void Take(JsonRow row) override {
    const rapidjson::Value& timeStamp = row[2];
    const rapidjson::Value& energy = row[3];
    if (!timeStamp.IsString() || !energy.IsNumber()) return;
    const LocalTime time = times_.Read(timeStamp.GetString());
    if (!period_.Includes(time.instant)) return;
    store_.rows.push_back({IndexOf(row[0]), IndexOf(row[1]), RowTime(time), StoredEnergy(energy)});
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

std::string InJson(std::string_view text) {
  JsonBuffer buffer;
  JsonWriterInto<JsonBuffer> writer(buffer);
  writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
  return {buffer.GetString(), buffer.GetSize()};
}

/// Names as JSON strings. Those of the rows written last are remembered: a log keeps each of its
/// names once, so the address of a name stands for it.
class NamesInJson {
 public:
  [[nodiscard]] const std::string& Of(std::string_view name) {
    Entry& entry = entries_[reinterpret_cast<std::uintptr_t>(name.data()) / 16 % entries_.size()];
    if (entry.name != name.data()) entry = {name.data(), InJson(name)};
    return entry.text;
  }

 private:
  struct Entry {
    const char* name = nullptr;
    std::string text;
  };
  std::vector<Entry> entries_ = std::vector<Entry>(4096);
};

/// Writes the rows with the bytes of RapidJSON's writer: members in order, no white space.
class StoreWriter {
 public:
  explicit StoreWriter(std::FILE* file) : file_(file) { text_.reserve(2 * kFlushBytes); }

  void Write(const PowerLog& log) {
    text_ += '[';
    log.ForEach([this](const PowerLogRecord& row) {
      if (!std::exchange(isFirst_, false)) text_ += ',';
      WriteRow(row);
      if (text_.size() >= kFlushBytes) Flush();
    });
    text_ += ']';
    Flush();
  }

 private:
  static constexpr std::size_t kFlushBytes = 65536;

  [[nodiscard]] static std::string KeyAfter(char before, std::string_view key) {
    return before + ('"' + std::string(key)) + "\":";
  }

  void WriteRow(const PowerLogRecord& row) {
    DateBuffer timeStamp;
    std::array<char, 20> energy{};
    const auto [end, error] =
        std::to_chars(energy.data(), energy.data() + energy.size(), row.TotalEnergy);
    static_cast<void>(error);  // twenty characters hold every number
    text_ += nameKey_;
    text_ += names_.Of(row.Name);
    text_ += displayNameKey_;
    text_ += names_.Of(row.DisplayName);
    text_ += timeStampKey_;
    text_ += WriteTimeStamp(row.TimeStamp.Fields(), timeStamp);
    text_ += totalEnergyKey_;
    text_.append(energy.data(), end);
    text_ += '}';
  }

  // A write that fails is not reported, as everywhere in the data folder.
  void Flush() {
    static_cast<void>(std::fwrite(text_.data(), 1, text_.size(), file_));
    text_.clear();
  }

  std::FILE* file_;
  // What comes before each value. The time stamp is the only value with quotation marks of its own.
  const std::string nameKey_ = KeyAfter('{', kNameKey);
  const std::string displayNameKey_ = KeyAfter(',', kDisplayNameKey);
  const std::string timeStampKey_ = KeyAfter(',', kTimeStampKey) + '"';
  const std::string totalEnergyKey_ = '"' + KeyAfter(',', kTotalEnergyKey);
  NamesInJson names_;
  std::string text_;
  bool isFirst_ = true;  ///< nothing but the opening bracket is written
};

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
  const UniqueFile file = OpenForWriting(path);
  if (!file) return false;
  StoreWriter(file.get()).Write(log);
  return true;
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
