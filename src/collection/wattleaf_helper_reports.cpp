#include "collection/wattleaf_helper.h"

#include <io.h>

#include <cstdio>
#include <optional>

#include "base/byte_text.h"
#include "base/calendar.h"
#include "base/date_text.h"
#include "base/plain_file.h"
#include "catalogue/app_identity.h"
#include "catalogue/file_description.h"
#include "catalogue/icon_export.h"
#include "logging/trace_logger.h"
#include "reports/power_report.h"
#include "reports/power_store.h"
#include "reports/ranking.h"
#include "reports/ranking_text.h"
#include "reports/report_commands.h"
#include "reports/report_runner.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Reads the 30-day store; holds the lock only while it is open. Empty if the store is missing, not
/// a plain file, too large, not JSON or no array.
std::optional<StoredRows> LoadPowerStore(const std::wstring& path, const ReportingPeriod& period,
                                         std::mutex& storeMutex) {
  const std::lock_guard lock(storeMutex);
  if (!IsKnownPlainFile(path)) return std::nullopt;
  return TryReadPowerStore(path, period);
}

/// Writes the store under the same lock. A store that cannot be opened stays as it is; failure is
/// ignored, as the next pass writes it again.
void SavePowerStore(const std::wstring& path, const PowerLog& log, std::mutex& storeMutex) {
  const std::lock_guard lock(storeMutex);
  static_cast<void>(WritePowerStore(path, log));
}

/// Logs a tool's status. For a negative one the exception of ToolFailureText propagates.
void LogToolFailure(std::wstring_view literal, int status) {
  const std::wstring text = ToolFailureText(literal, status);
  // The text is an argument, not the format: it may end in "%" or contain "%d".
  Logging::LogManager::GetLogger()->LogError(L"%s", text.c_str());
}

std::string LogTimeNow() { return FormatLogTime(*GetCurrentDateTime()); }

/// The low bytes, for the narrow calls that write icons.
std::string NarrowDirectory(const std::wstring& directory) {
  return NarrowChars(directory.data(), directory.data() + directory.size());
}

/// Makes the client's folder. A path with a zero inside would be cut short and make another one.
void MakeIconDirectory(const std::wstring& directory) {
  if (directory.empty() || directory.find(L'\0') != std::wstring::npos) return;
  static_cast<void>(CreateDirectoryTree(directory));
}

}  // namespace

void WattleafHelper::OnGetTop20PowerApps() {
  const int status = RunReportTool(collectionPath, kPowerReportCommand);
  if (status != 0) return LogToolFailure(kPowerReportFailure, status);

  ConvertPowerLogXmltoJson();
  // Kept on purpose: it waits for the holder of the lock and guards nothing (test
  // OnGetTop20PowerApps.TakesTheLockAfterTheConversion).
  const std::lock_guard wait(dataMutex);
}

void WattleafHelper::OnGetErrorAndWarnings() {
  const int status = RunReportTool(collectionPath, kEnergyReportCommand);
  if (status != 0) return LogToolFailure(kEnergyReportFailure, status);

  const std::lock_guard lock(dataMutex);
  errorsAndWarningsJson.clear();
}

// Kept on purpose: nothing fills the text or reads the report, so the answer is the empty list,
// without the lock (tests GetErrorsAndWarnings.*).
void WattleafHelper::GetErrorsAndWarnings(std::wstring& result) {
  result = errorsAndWarningsJson.empty() ? L"[]" : errorsAndWarningsJson;
}

void WattleafHelper::ConvertPowerLogXmltoJson() {
  const std::wstring folder = std::wstring(collectionPath) + L"\\";
  const std::wstring reportPath = folder + kPowerReportFileName;
  const std::wstring storePath = folder + kPowerStoreFileName;
  const std::string devicePrefix = GetDevicePath(kSystemDrive);
  const ReportingPeriod period(*GetCurrentDateTime(), kPowerStoreDays);

  PowerLog log;
  if (IsKnownPlainFile(reportPath)) {
    std::printf("XML parsing started at :%s\n", LogTimeNow().c_str());
    const auto packagedApps = uwpApps.Current();
    DisplayNames names(devicePrefix, *packagedApps, &GetFileDescription);
    ReadPowerReport(reportPath, period, names, log);
    _wunlink(reportPath.c_str());
  }
  std::printf("XML parsing completed :%s\n", LogTimeNow().c_str());

  if (const auto store = LoadPowerStore(storePath, period, storeMutex))
    MergePowerStore(*store, log);
  SavePowerStore(storePath, log, storeMutex);
}

// Any failure leaves the result as it was, and nothing is logged.
void WattleafHelper::GetTop20PowerApps(std::wstring& request, std::wstring& result) {
  try {
    const RankingRequest wanted = SplitRankingRequest(request);
    MakeIconDirectory(wanted.iconDirectory);
    const std::string devicePrefix = GetDevicePath(kSystemDrive);
    const ReportingPeriod period(*GetCurrentDateTime(), wanted.days);

    const std::wstring path = std::wstring(collectionPath) + L"\\" + kPowerStoreFileName;
    const auto store = LoadPowerStore(path, period, storeMutex);
    if (!store) return;

    SystemIconMaker icons(devicePrefix);
    const auto desktopApps = win32Apps.Current();
    const auto packagedApps = uwpApps.Current();
    result = RankingText(RankApplications(*store, *desktopApps, *packagedApps,
                                          NarrowDirectory(wanted.iconDirectory), icons));
  } catch (...) {
    // Dropped: the client gets no text and can repeat the command.
  }
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
