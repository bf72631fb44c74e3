#include <io.h>

#include <filesystem>

#include "collection/wattleaf_helper.h"
#include "ledger/calendar.h"
#include "ledger/date_text.h"
#include "ledger/day_energy.h"
#include "ledger/device_path.h"
#include "ledger/figures.h"
#include "ledger/hourly_energy.h"
#include "ledger/plain_file.h"
#include "ledger/power_ledger.h"
#include "ledger/sample_files.h"
#include "ledger/sample_reader.h"
#include "ledger/series.h"
#include "ledger/series_text.h"
#include "logging/trace_logger.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using Logging::LogManager;

/// Null for a ledger file that is missing, no plain file or no JSON.
std::unique_ptr<GenericDocument> ReadLedgerFile(const std::wstring& path) {
  return std::unique_ptr<GenericDocument>(IsKnownPlainFile(path) ? LoadJsonDocument(path)
                                                                 : nullptr);
}

/// A link in the place of a day's samples was never read, so it is not deleted either.
void RemoveSamples(const std::wstring& folder, const DateTime& day) {
  const std::wstring path = EncryptedSamplePath(folder, day);
  if (IsKnownPlainFile(path)) _wunlink(path.c_str());
}

/// Replaces `result` by what `makeText` gives; on any exception logs `message` and leaves it.
template <typename MakeText>
void AnswerOrLog(std::wstring& result, const wchar_t* message, MakeText makeText) {
  try {
    result = makeText();
  } catch (...) {
    LogManager::GetLogger()->LogError(message);
  }
}

}  // namespace

std::string WattleafHelper::GetDevicePath(std::string drive) { return QueryDevicePath(drive); }

GenericDocument* WattleafHelper::GetJsonFromDate(const DateTime& day) {
  return ReadSamplesOfDay(collectionPath, day, [](const std::wstring& path) {
    LogManager::GetLogger()->LogInfo(L"Decrypting file :%s", path.c_str());
  });
}

void WattleafHelper::CalculateDailyPowerConsumption() {
  const std::lock_guard lock(dataMutex);
  const std::wstring ledgerPath = std::wstring(collectionPath) + L"\\" + kLedgerFileName;
  const DateTime today = *GetCurrentDate();
  LogManager::GetLogger()->LogInfo(L"Date:%s", FormatDateWide(today).c_str());

  if (const auto document = ReadLedgerFile(ledgerPath)) {
    LoadLedger(*document, OldestDay(today), dailyLedger);
  }
  UpdateLedger(today, dailyLedger,
               {[this](const DateTime& day) {
                  try {
                    return CalculateDailyPowerConsumption(day);
                  } catch (const std::filesystem::filesystem_error&) {
                    return 0.0F;  // tried again at the next pass
                  }
                },
                [this](const DateTime& day) { RemoveSamples(collectionPath, day); }});
  if (!SaveJsonDocument(ledgerPath, LedgerDocument(dailyLedger))) {
    LogManager::GetLogger()->LogError(
        L"Error in CalculateDailyPowerConsumption() : Save Json failed");
  }
  dataChanged = true;
}

float WattleafHelper::CalculateDailyPowerConsumption(const DateTime& day) {
  return DayEnergyWh(day, [this](const DateTime& wanted) {
    return std::unique_ptr<GenericDocument>(GetJsonFromDate(wanted));
  });
}

std::map<int, float> WattleafHelper::GetPowerConsumption(const DateTime& day) {
  const std::unique_ptr<GenericDocument> samples(GetJsonFromDate(day));
  return HourlyEnergyWh(samples.get());
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
