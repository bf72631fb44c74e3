#include "collection/wattleaf_helper.h"

#include <io.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/calendar.h"
#include "base/date_text.h"
#include "base/plain_file.h"
#include "ledger/day_energy.h"
#include "ledger/ledger_file.h"
#include "ledger/power_ledger.h"
#include "ledger/sample_energy.h"
#include "ledger/sample_files.h"
#include "ledger/sample_reader.h"
#include "ledger/series.h"
#include "logging/trace_logger.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using Logging::LogManager;

/// Copies the file's days into `ledger`; a file that is missing, not a plain file or not a JSON
/// array has none. False if its status cannot be read: it may hold days that `ledger` lacks, and
/// must not be overwritten.
bool LoadLedgerFile(const std::wstring& path, const DateTime& today, PowerLedger& ledger) {
  const std::optional<bool> isPlain = TryIsPlainFile(path);
  if (!isPlain) return false;
  if (!*isPlain) return true;
  LoadLedger(path, OldestDay(today), ledger);
  return true;
}

/// Deletes the samples of booked days, but no link that has replaced such a file. Failure is
/// ignored: a booked day is not worked out again.
void DeleteSamples(const std::vector<std::wstring>& paths) {
  for (const std::wstring& path : paths) {
    if (IsKnownPlainFile(path)) _wunlink(path.c_str());
  }
}

/// Fills an optional object for its scope.
template <typename Object>
class ScopedObject {
 public:
  explicit ScopedObject(std::optional<Object>& object) : object_(object) { object_.emplace(); }
  ScopedObject(const ScopedObject&) = delete;
  ScopedObject& operator=(const ScopedObject&) = delete;
  ~ScopedObject() { object_.reset(); }

  [[nodiscard]] Object* operator->() const { return &*object_; }

 private:
  std::optional<Object>& object_;
};

/// Replaces `result` by the result of `makeText`; on any exception logs `message` and leaves it.
template <typename MakeText>
void AnswerOrLog(std::wstring& result, const wchar_t* message, MakeText makeText) {
  try {
    result = makeText();
  } catch (...) {
    LogManager::GetLogger()->LogError(message);
  }
}

}  // namespace

bool WattleafHelper::UsePlainCopy(const DateTime& day, const PlainCopyUse& use) {
  const std::wstring encrypted = EncryptedSamplePath(collectionPath, day);
  if (runningPass && std::ranges::find(runningPass->discardedSamples, encrypted) !=
                         runningPass->discardedSamples.end()) {
    return UseLeftoverCopyOfDay(collectionPath, day, use);
  }
  const auto decrypt = [this](const std::wstring& path) {
    LogManager::GetLogger()->LogInfo(L"Decrypting file :%s", path.c_str());
    static_cast<void>(runningPass ? DecryptSampleFile(path, runningPass->recentSamples)
                                  : DecryptSampleFile(path));
  };
  return UseSamplesOfDay(collectionPath, day, decrypt, use);
}

GenericDocument* WattleafHelper::GetJsonFromDate(const DateTime& day) {
  std::unique_ptr<GenericDocument> samples;
  const auto load = [&](const std::wstring& path) { samples.reset(LoadJsonDocument(path)); };
  if (UsePlainCopy(day, load)) return samples.release();
  return std::make_unique<GenericDocument>(rapidjson::kArrayType).release();
}

bool WattleafHelper::ReadSamples(const DateTime& day, JsonRowSink& samples) {
  auto outcome = JsonRowsOutcome::kUnreadable;
  const auto read = [&](const std::wstring& path) {
    outcome = ReadJsonRows(path, kSampleMembers, samples);
  };
  return UsePlainCopy(day, read) && outcome == JsonRowsOutcome::kRows;
}

void WattleafHelper::CalculateDailyPowerConsumption() {
  const std::lock_guard lock(dataMutex);
  const std::wstring ledgerPath = std::wstring(collectionPath) + L"\\" + kLedgerFileName;
  const DateTime today = *GetCurrentDate();
  LogManager::GetLogger()->LogInfo(L"Date:%s", FormatDateWide(today).c_str());

  const bool mayBeSaved = LoadLedgerFile(ledgerPath, today, dailyLedger);
  const auto energyOf = [this](const DateTime& day) {
    try {
      return CalculateDailyPowerConsumption(day);
    } catch (const std::filesystem::filesystem_error&) {
      return 0.0F;  // not booked; the next pass tries again
    }
  };
  const ScopedObject pass(runningPass);
  UpdateLedger(today, dailyLedger,
               {energyOf, [&](const DateTime& day) {
                  pass->discardedSamples.push_back(EncryptedSamplePath(collectionPath, day));
                }});
  RemoveLeftoverCopies(collectionPath);
  if (!mayBeSaved || !SaveLedger(ledgerPath, dailyLedger)) {
    LogManager::GetLogger()->LogError(
        L"Error in CalculateDailyPowerConsumption() : Save Json failed");
  } else if (!pass->discardedSamples.empty() && IsKnownPlainFile(ledgerPath) &&
             HoldsLedger(ledgerPath, dailyLedger)) {
    // Only now: if the process ends earlier, the next one needs the samples.
    DeleteSamples(pass->discardedSamples);
  }
  dataChanged.store(true, std::memory_order_relaxed);
}

float WattleafHelper::CalculateDailyPowerConsumption(const DateTime& day) {
  RecentDays none;
  RecentDays& recent = runningPass ? runningPass->recentDays : none;
  return DayEnergyWh(day, [&](const DateTime& wanted) {
    std::shared_ptr<const DaySummary> samples;
    const auto read = [&](const std::wstring& path) { samples = recent.Read(path); };
    static_cast<void>(UsePlainCopy(wanted, read));
    return samples;
  });
}

std::map<int, float> WattleafHelper::GetPowerConsumption(const DateTime& day) {
  return HourlyEnergyWh(day, std::bind_front(&WattleafHelper::ReadSamples, this));
}

float WattleafHelper::GetDailyAveragePowerConsumption() {
  const std::lock_guard lock(dataMutex);
  return AverageDayEnergyWh(*GetCurrentDate(), dailyLedger);
}

float WattleafHelper::GetTreeSavedCount() { return TreesSaved(GetDailyAveragePowerConsumption()); }

void WattleafHelper::GetDailyPowerConsumption(std::wstring& result) {
  const std::lock_guard lock(dataMutex);
  AnswerOrLog(result, L"Exception in GetDailyPowerConsumption", [this] {
    const DateTime now = *GetCurrentDateTime();
    const auto yesterday = GetPowerConsumption(ShiftKeepingHour(now, -kSecondsPerDay));
    const auto today = GetPowerConsumption(now);
    return SeriesText(HourSeries(now.tm_hour, yesterday, today), kHourLabelKey);
  });
}

void WattleafHelper::GetWeeklyPowerConsumption(std::wstring& result) {
  const std::lock_guard lock(dataMutex);
  AnswerOrLog(result, L"Exception in GetWeeklyPowerConsumption", [this] {
    return SeriesText(DaySeries(*GetCurrentDate(), dailyLedger), kDayLabelKey);
  });
}

void WattleafHelper::GetMonthlyPowerConsumption(std::wstring& result) {
  const std::lock_guard lock(dataMutex);
  AnswerOrLog(result, L"Exception in GetMonthlyPowerConsumption", [this] {
    const DateTime today = *GetCurrentDate();
    return SeriesText(MonthSeries(today, *GetCurrentDateTime(), dailyLedger), kMonthLabelKey);
  });
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
