// The ledger: the energy of a day, the hourly chart, and a pass over all days, each from the files
// on disk. Encryption and the checks of the files' status belong to Windows and are not part of it.
#include <algorithm>
#include <fstream>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/date_text.h"
#include "base/json_document.h"
#include "base/json_rows.h"
#include "base/local_calendar.h"
#include "ledger/day_energy.h"
#include "ledger/ledger_file.h"
#include "ledger/power_ledger.h"
#include "ledger/recent_days.h"
#include "ledger/sample_energy.h"
#include "ledger/series.h"
#include "operation.h"
#include "raw_parsers.h"
#include "written_samples.h"

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;
using Path = std::filesystem::path;
using Paths = std::vector<Path>;

DateTime Day(int number) {
  DateTime day;
  return ParseDateTime(day, Bench::DateOfDay(number).c_str(), kDateFormat);
}

/// A folder of sample files, named after their days. The days are 0 to 210, as far as the ledger
/// reaches back from the last one.
struct DataFolder {
  std::string name;
  /// Days whose samples count as deleted, for the rest of a pass.
  Paths discarded{};
  /// What the last pass or chart read, in order.
  Paths readFiles{};

  [[nodiscard]] Path Of(const std::string& file) const { return Bench::Folder() / name / file; }
  [[nodiscard]] Path Samples(const DateTime& day) const {
    return Of(FormatDateTime(day, kDateFormat) + ".json");
  }
  [[nodiscard]] Path Ledger() const { return Of("ledger.json"); }

  void Write(const Bench::WrittenSamples& samples) const {
    std::filesystem::create_directories(Bench::Folder() / name);
    Bench::WriteSamples(Of(Bench::DateOfDay(samples.day) + ".json"), samples);
  }

  /// A DaySummaryReader.
  std::shared_ptr<const DaySummary> Read(RecentDays& recent, const DateTime& day) {
    const Path path = Samples(day);
    if (std::ranges::find(discarded, path) != discarded.end() || !std::filesystem::exists(path)) {
      return nullptr;
    }
    readFiles.push_back(path);
    return recent.Read(path.wstring());
  }

  /// A DayReader.
  bool ReadSamples(const DateTime& day, JsonRowSink& sink) {
    return ReadJsonRows(Samples(day).wstring(), kSampleMembers, sink) == JsonRowsOutcome::kRows;
  }
};

/// Parses each file with RapidJSON alone.
bool ParseAll(const Paths& paths) {
  return std::ranges::all_of(paths,
                             [](const Path& path) { return Bench::ParseJson(path).IsArray(); });
}

// One day.

float EnergyOfDay(DataFolder& folder, const DateTime& day) {
  folder.readFiles.clear();
  RecentDays recent;
  return DayEnergyWh(day, std::bind_front(&DataFolder::Read, &folder, std::ref(recent)));
}

Paths FilesAround(const DataFolder& folder, int day) {
  return {folder.Samples(Day(day)), folder.Samples(Day(day - 1)), folder.Samples(Day(day + 1))};
}

// One sample a second, and one sample on each of the days before and after.
DataFolder oneDay{"one-day"};
void PrepareOneDay() {
  oneDay.Write({.day = 0, .count = 1});
  oneDay.Write({.day = 1, .count = Bench::Sized(86'400, 100)});
  oneDay.Write({.day = 2, .count = 1});
}
const Bench::Registration dayOurs{
    {"day/ours", PrepareOneDay, [] { return EnergyOfDay(oneDay, Day(1)) > 0; }}};
const Bench::Registration dayRaw{
    {"day/raw", PrepareOneDay, [] { return ParseAll(FilesAround(oneDay, 1)); }}};

// The neighbours are as large as the day.
DataFolder threeDays{"three-days"};
void PrepareThreeDays() {
  for (int day = 0; day < 3; ++day) {
    threeDays.Write({.day = day, .count = Bench::Sized(86'400, 100)});
  }
}
const Bench::Registration neighboursOurs{{"day-and-neighbours/ours", PrepareThreeDays,
                                          [] { return EnergyOfDay(threeDays, Day(1)) > 0; }}};
const Bench::Registration neighboursRaw{{"day-and-neighbours/raw", PrepareThreeDays,
                                         [] { return ParseAll(FilesAround(threeDays, 1)); }}};

// The chart of the last twelve hours, at half past nine.

std::map<int, float> EnergyByHour(DataFolder& folder, const DateTime& day) {
  return HourlyEnergyWh(day, std::bind_front(&DataFolder::ReadSamples, &folder));
}

bool HourlyChart() {
  const auto yesterday = EnergyByHour(threeDays, Day(0));
  const auto today = EnergyByHour(threeDays, Day(1));
  return SeriesText(HourSeries(9, yesterday, today), kHourLabelKey).size() > 100;
}
const Bench::Registration hoursOurs{{"hours/ours", PrepareThreeDays, HourlyChart}};
const Bench::Registration hoursRaw{
    {"hours/raw", PrepareThreeDays, [] {
       return ParseAll({threeDays.Samples(Day(0)), threeDays.Samples(Day(1))});
     }}};

// A pass over all days.

bool Pass(DataFolder& folder) {
  folder.readFiles.clear();
  folder.discarded.clear();
  const DateTime today = Day(kMostLedgerDays - 1);
  PowerLedger ledger;
  RecentDays recent;
  LoadLedger(folder.Ledger().wstring(), OldestDay(today), ledger);
  const auto energyOf = [&](const DateTime& day) {
    return DayEnergyWh(day, std::bind_front(&DataFolder::Read, &folder, std::ref(recent)));
  };
  const auto discard = [&](const DateTime& day) {
    folder.discarded.push_back(folder.Samples(day));
  };
  UpdateLedger(today, ledger, {energyOf, discard});
  return SaveLedger(folder.Ledger().wstring(), ledger) && ledger.size() >= kMostLedgerDays;
}

/// A first pass: there is no ledger yet.
void PrepareDays(DataFolder& folder, int days) {
  for (int day = kMostLedgerDays - days; day < kMostLedgerDays; ++day) {
    folder.Write({.day = day, .count = Bench::Sized(1440, 10), .secondsApart = 60});
  }
  std::filesystem::remove(folder.Ledger());
}

/// The files that a pass reads, as often as it reads them.
void PrepareReadFiles(DataFolder& folder, const std::function<void()>& prepare) {
  if (!folder.readFiles.empty()) return;
  prepare();
  static_cast<void>(Pass(folder));
}

DataFolder allDays{"all-days"};
void PrepareAllDays() { PrepareDays(allDays, kMostLedgerDays); }
const Bench::Registration allDaysOurs{
    {"pass-211-days/ours", PrepareAllDays, [] { return Pass(allDays); }}};
const Bench::Registration allDaysRaw{{"pass-211-days/raw",
                                      [] { PrepareReadFiles(allDays, PrepareAllDays); },
                                      [] { return ParseAll(allDays.readFiles); }}};

DataFolder fewDays{"few-days"};
const Bench::Registration fewDaysOurs{{"pass-21-days/ours",
                                       [] { PrepareDays(fewDays, kMostLedgerDays / 10); },
                                       [] { return Pass(fewDays); }}};

// Folders of hostile size. They are compared with parsing each file once.

/// A day of 23 MB whose energy stays 0.0, between two short days, so that each pass needs it as a
/// day and as both neighbours.
void WriteZeroDay(DataFolder& folder, bool isPadded) {
  const std::size_t count = Bench::Sized(255'000, 100);
  folder.Write({.day = 99, .count = 3, .hasPower = false});
  folder.Write({.day = 100, .count = count, .hasPower = false, .isPadded = isPadded});
  folder.Write({.day = 101, .count = 3, .hasPower = false});
  std::filesystem::remove(folder.Ledger());
}

DataFolder zeroDay{"zero-day"};
void PrepareZeroDay() { WriteZeroDay(zeroDay, /*isPadded=*/true); }
const Bench::Registration zeroDayOurs{
    {"zero-day/ours", PrepareZeroDay, [] { return Pass(zeroDay); }}};
const Bench::Registration zeroDayRaw{
    {"zero-day/raw", PrepareZeroDay, [] { return ParseAll(FilesAround(zeroDay, 100)); }}};

// The same with times that are not in the collector's form.
DataFolder oddTimes{"odd-times"};
void PrepareOddTimes() { WriteZeroDay(oddTimes, /*isPadded=*/false); }
const Bench::Registration oddTimesOurs{
    {"odd-times/ours", PrepareOddTimes, [] { return Pass(oddTimes); }}};
const Bench::Registration oddTimesRaw{
    {"odd-times/raw", PrepareOddTimes, [] { return ParseAll(FilesAround(oddTimes, 100)); }}};

/// A ledger of 50 MB: each later day up to the end of the calendar, padded with spaces.
DataFolder futureDays{"future-days"};
void PrepareFutureDays() {
  std::filesystem::create_directories(Bench::Folder() / futureDays.name);
  std::ofstream file(futureDays.Ledger(), std::ios::binary);
  const auto days = static_cast<int>(Bench::Sized(355'000, 100));
  for (int day = 0; day < days; ++day) {
    file << (day == 0 ? '[' : ',') << R"({"Key":")" << Bench::DateOfDay(kMostLedgerDays + day)
         << R"(","Value":12.5)" << std::string(108, ' ') << '}';
  }
  file << ']';
}

/// The document that a pass saves.
rapidjson::Document& SavedLedger() {
  static rapidjson::Document document;
  return document;
}
void PrepareSavedLedger() {
  PrepareFutureDays();
  if (SavedLedger().IsArray()) return;
  static_cast<void>(Pass(futureDays));
  SavedLedger() = Bench::ParseJson(futureDays.Ledger());
  PrepareFutureDays();
}
const Bench::Registration futureDaysOurs{
    {"future-days/ours", PrepareFutureDays, [] { return Pass(futureDays); }}};
const Bench::Registration futureDaysRaw{{"future-days/raw", PrepareSavedLedger, [] {
                                           return Bench::ParseJson(futureDays.Ledger()).IsArray() &&
                                                  Bench::WriteJson(futureDays.Of("written.json"),
                                                                   SavedLedger());
                                         }}};

}  // namespace
