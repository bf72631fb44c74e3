#include "collection/pass_model.h"

#include <cstdio>

#include "collection/ledger_fixture.h"
#include "ledger/fake_days.h"

namespace TestSupport {

namespace {

// Three powers for each day, which differ between days less than 37 days apart.
float EarlyWatts(int back) { return 20.0F + static_cast<float>(back % 37); }
float NoonWatts(int back) { return 30.0F + static_cast<float>(back % 41); }
float LateWatts(int back) { return 40.0F + static_cast<float>(back % 43); }

constexpr char kNewRow[] =
    R"({"Name":"new","DisplayName":"","TimeStamp":"2024-05-08:02:10:46","TotalEnergy":17})";
constexpr char kChangedRow[] =
    R"({"Name":"both","DisplayName":"","TimeStamp":"2024-05-07:03:00:00","TotalEnergy":900})";
constexpr char kRowBeforeTheChange[] =
    R"({"Name":"both","DisplayName":"","TimeStamp":"2024-05-07:03:00:00","TotalEnergy":400})";
/// Not in the report.
constexpr char kStoredRow[] =
    R"({"Name":"old","DisplayName":"Old","TimeStamp":"2024-05-01:02:00:00","TotalEnergy":5})";
/// Older than 30 days.
constexpr char kForgottenRow[] =
    R"({"Name":"old","DisplayName":"Old","TimeStamp":"2024-04-07:02:00:00","TotalEnergy":6})";

/// The walk of one pass.
class Walk {
 public:
  Walk(FolderState& folder, DayEnergies& memory, const FailedWrites& failed)
      : folder_(folder), memory_(memory), failed_(failed) {}

  void Run() {
    for (int back = 0; back <= kOldestDay; ++back) {
      float& energyWh = memory_[back];  // 0.0 for a day that is new
      if (back != 0 && energyWh != 0.0F) continue;
      energyWh = Energy(back);
      if (energyWh != 0.0F && back > 1) discarded_.insert(back);
    }
  }

  [[nodiscard]] const std::set<int>& Discarded() const { return discarded_; }
  [[nodiscard]] int Readings() const { return readings_; }

 private:
  /// From the last sample of the day before to the first of this day, the five minutes at noon, and
  /// from the last sample to the first of the day after.
  float Energy(int back) {
    if (!CanRead(back)) return 0.0F;
    float sumWh = 0.0F;
    if (CanRead(back + 1)) sumWh += 240.0F * LateWatts(back + 1) / 3600.0F;
    sumWh += 300.0F * NoonWatts(back) / 3600.0F;
    if (CanRead(back - 1)) sumWh += 240.0F * EarlyWatts(back - 1) / 3600.0F;
    return sumWh / 0.88F;
  }

  /// Each reading uses up a plain copy: the one that it writes, or an older one.
  bool CanRead(int back) {
    const bool isCopyLeft = folder_.copies.erase(back) != 0;
    if (folder_.samples.count(back) == 0 || discarded_.count(back) != 0) return isCopyLeft;
    return !failed_.copy(++readings_);
  }

  FolderState& folder_;
  DayEnergies& memory_;
  const FailedWrites& failed_;
  std::set<int> discarded_;
  int readings_ = 0;
};

void LoadLedger(const FolderState& folder, DayEnergies& memory) {
  if (!folder.ledger) return;
  for (const auto& [back, energyWh] : *folder.ledger) {
    if (back < kOldestDay) memory[back] = energyWh;
  }
}

/// Name and time.
std::string IdentityOf(const std::string& row) {
  const auto time = row.find("\"TimeStamp\"");
  return row.substr(0, row.find("\"DisplayName\"")) +
         row.substr(time, row.find("\"TotalEnergy\"") - time);
}

/// The reported rows, then the stored ones that are neither reported nor too old.
std::vector<std::string> MergedRows(const std::vector<std::string>& reported,
                                    const std::vector<std::string>& stored) {
  std::vector<std::string> rows = reported;
  std::set<std::string> known;
  for (const std::string& row : reported) known.insert(IdentityOf(row));
  for (const std::string& row : stored) {
    if (row != kForgottenRow && known.insert(IdentityOf(row)).second) rows.push_back(row);
  }
  return rows;
}

std::string Joined(const std::set<int>& days) {
  std::string text;
  for (const int back : days) text += " " + std::to_string(back);
  return text;
}

}  // namespace

std::string Describe(const FolderState& folder) {
  std::string text = "ledger:";
  if (!folder.ledger) text += " none";
  for (const auto& [back, energyWh] : folder.ledger.value_or(DayEnergies())) {
    char entry[40];
    std::snprintf(entry, sizeof(entry), " %d=%.9g", back, static_cast<double>(energyWh));
    text += entry;
  }
  text += "\nsamples:" + Joined(folder.samples) + "\ncopies:" + Joined(folder.copies) + "\nstore:";
  if (!folder.store) text += " none";
  for (const std::string& row : folder.store.value_or(std::vector<std::string>())) {
    text += "\n  " + row;
  }
  return text + "\n";
}

FolderState FolderBeforeThePass() {
  FolderState folder;
  folder.ledger.emplace();
  for (int back = kUnseenDays; back < kOldestDay; ++back) {
    (*folder.ledger)[back] = 50.0F + 0.25F * static_cast<float>(back);
  }
  for (const int back : {23, kCopiedDay, kLateDay}) (*folder.ledger)[back] = 0.0F;
  for (int back = 0; back < kUnseenDays; ++back) folder.samples.insert(back);
  folder.samples.insert(kLateDay);
  folder.copies = {kCopiedDay};
  folder.store = {kRowBeforeTheChange, kStoredRow, kForgottenRow};
  return folder;
}

FolderState AfterPass(FolderState folder, DayEnergies& memory, const FailedWrites& failed) {
  LoadLedger(folder, memory);
  Walk walk(folder, memory, failed);
  walk.Run();
  folder.copies.clear();
  if (failed.ledger) {
    folder.ledger.reset();
  } else {
    folder.ledger = memory;
    for (const int back : walk.Discarded()) folder.samples.erase(back);
  }

  std::vector<std::string> reported;
  if (!failed.report) reported = {kNewRow, kChangedRow};
  folder.store = MergedRows(reported, folder.store.value_or(std::vector<std::string>()));
  if (failed.store) folder.store.reset();
  return folder;
}

int CopiesOfAPass(const FolderState& folder) {
  FolderState after = folder;
  DayEnergies memory;
  const FailedWrites none;
  LoadLedger(after, memory);
  Walk walk(after, memory, none);
  walk.Run();
  return walk.Readings();
}

std::string SamplesOfDay(int back) {
  const std::string date = DateBefore(kToday, back);
  const auto at = [&](const char* time, float watts) {
    return Sample(date + "T" + time, std::to_string(static_cast<int>(watts)));
  };
  return List({at("00:02:00", EarlyWatts(back)), at("12:00:00", NoonWatts(back)),
               at("12:05:00", 5000.0F), at("23:58:00", LateWatts(back))});
}

std::string ReportOfApplications() {
  const auto row = [](const char* name, const char* time, int energy) {
    return std::string("<Row AppId='") + name + "' TimeStamp='" + time +
           "'><TotalEnergyConsumption Value='" + std::to_string(energy) + "'/></Row>";
  };
  return "<Report>" + row("new", "2024-05-08:02:10:46", 17) +
         row("both", "2024-05-07:03:00:00", 900) + "</Report>";
}

}  // namespace TestSupport
