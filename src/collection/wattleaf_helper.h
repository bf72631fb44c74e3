#pragma once

#include <windows.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "base/calendar.h"
#include "base/json_document.h"
#include "base/json_rows.h"
#include "catalogue/installed_apps.h"
#include "collection/collector_status.h"
#include "collection/data_collector.h"
#include "ledger/power_ledger.h"
#include "ledger/recent_days.h"
#include "ledger/sample_reader.h"
#include "platform/win32/owners.h"
#include "platform/win32/unique_resource.h"
#include "platform/wmi/support_decision.h"
#include "wattleaf_export.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The one object that holds the library's state. Its operations take the lock, log and call the
/// rules of the other folders; only service/ and collection/ use it. The public operations are
/// exported; a program outside the library sees them through collection/helper_operations.h.
///
/// Threads: the host's threads call the public operations, the worker calls ProcessingCallback, and
/// a thread of the collector's calls MyNativeCallback. The flags and PlatformSupportState are
/// atomic words without order among them: a thread may see a change late, which does no harm.
class WattleafHelper {
 public:
  /// The one object, made on first use; concurrent first calls make one. Destroyed by the library's
  /// static clean-up if the library is freed. If the process ends it is abandoned, and nothing in
  /// the collector's library is called.
  [[nodiscard]] WATTLEAF_API static WattleafHelper& Instance();

  WattleafHelper(const WattleafHelper&) = delete;
  WattleafHelper& operator=(const WattleafHelper&) = delete;
  /// Waits for the worker, which may sleep for a day, then stops and unloads the collector. Drops
  /// all exceptions on the way.
  ~WattleafHelper();

  /// Checks the machine and the collector's file, loads the collector and starts it. True means
  /// that collection runs; failures are logged. On a supported machine a second call returns true
  /// without work, even if the first one failed.
  [[nodiscard]] WATTLEAF_API bool StartCollection();
  /// Stops a loaded collector, which stays loaded. The collector's exceptions propagate.
  WATTLEAF_API void StopCollection();
  /// Starts the worker thread at the lowest priority and keeps the module loaded until the process
  /// ends. A second call starts a second thread; the first continues without an owner. Throws
  /// std::system_error if the thread cannot be made.
  WATTLEAF_API void StartProcessing();

  /// 1 supported, 0 not supported, -1 firmware update required. Runs the probes, which block and
  /// may throw _com_error (platform/wmi/platform_probes.h), until a state is stored; later calls
  /// return the stored state.
  [[nodiscard]] WATTLEAF_API int IsPlatformSupported();
  /// Always true: see dataChanged.
  [[nodiscard]] WATTLEAF_API bool IsDataChanged();
  /// True once the collector has started or the first pass has ended.
  [[nodiscard]] WATTLEAF_API bool IsDataAvailable();

  /// Watt-hours per day, averaged over today and the six days before it. Waits for the ledger pass.
  [[nodiscard]] WATTLEAF_API float GetDailyAveragePowerConsumption();
  /// The number of trees that corresponds to that average.
  [[nodiscard]] WATTLEAF_API float GetTreeSavedCount();

  /// The last twelve hours, seven days and six months as JSON (ledger/series.h). Each waits for the
  /// ledger pass. On an exception, which is caught and logged, `result` stays as it was.
  WATTLEAF_API void GetDailyPowerConsumption(std::wstring& result);
  WATTLEAF_API void GetWeeklyPowerConsumption(std::wstring& result);
  WATTLEAF_API void GetMonthlyPowerConsumption(std::wstring& result);

  /// The applications with the largest shares of energy as JSON, at most twenty. `request` is
  /// "<icon folder>?<days>"; the folder is made, and receives an icon for each application. On any
  /// failure `result` stays as it was; nothing is logged.
  WATTLEAF_API void GetTop20PowerApps(std::wstring& request, std::wstring& result);
  /// An empty JSON array.
  WATTLEAF_API void GetErrorsAndWarnings(std::wstring& result);

 protected:
  /// Finds the host's directory; nothing else is read, made or started.
  WattleafHelper();

  /// The CollectorCallback that is passed to the collector.
  static void MyNativeCallback(const char** items, int count);

  /// The device path of a drive such as "C:" (QueryDosDeviceA); empty if it has none.
  [[nodiscard]] std::string GetDevicePath(std::string drive);

  /// The worker's body. Exceptions that an operation does not catch end the process.
  void ProcessingCallback();

  /// Passes the plain copy of one day's samples to `use` (ledger/sample_reader.h); false for a day
  /// without one. The caller holds dataMutex. Throws filesystem_error as IsPlainFile does
  /// (base/plain_file.h).
  [[nodiscard]] bool UsePlainCopy(const DateTime& day, const PlainCopyUse& use);
  /// One day's samples as a document, which the caller owns: an empty array for a day without
  /// readable samples, null for a copy that does not parse. The caller holds dataMutex. Throws as
  /// UsePlainCopy does.
  [[nodiscard]] GenericDocument* GetJsonFromDate(const DateTime& day);
  /// Passes one day's samples to `samples` (ledger/day_energy.h); false for a day without a list
  /// that parses. The caller holds dataMutex. Throws as UsePlainCopy does.
  [[nodiscard]] bool ReadSamples(const DateTime& day, JsonRowSink& samples);

  /// The ledger pass: loads the ledger, works out the days that need it, saves it, and then deletes
  /// the samples of the days booked. Holds dataMutex for its whole run.
  void CalculateDailyPowerConsumption();
  /// Watt-hours of one day. The caller holds dataMutex. Throws as UsePlainCopy does.
  [[nodiscard]] float CalculateDailyPowerConsumption(const DateTime& day);
  /// Watt-hours by hour of the day (ledger/day_energy.h). The caller holds dataMutex. Throws as
  /// UsePlainCopy does.
  [[nodiscard]] std::map<int, float> GetPowerConsumption(const DateTime& day);

  /// Reads the energy tool's report, deletes it, and merges its rows into the 30-day store. Prints
  /// up to two lines to standard output.
  void ConvertPowerLogXmltoJson();
  /// Each runs the energy tool. A status other than 0 is logged, and a negative one throws
  /// (reports/report_commands.h). After success the first one converts the report; the second one
  /// only clears errorsAndWarningsJson and leaves its report unread.
  void OnGetTop20PowerApps();
  void OnGetErrorAndWarnings();

  /// Read the catalogues (catalogue/installed_apps.h) and replace the current ones. Exceptions
  /// propagate and leave the current catalogue.
  void LoadInstalledWin32Apps();
  void LoadInstalledUWPApps();
  /// Sets `logo` to the logo that a package's manifest names, if any. `displayName` is not used. An
  /// exception is logged; a manifest that cannot be read or parsed is not.
  void ParseManifest(const std::wstring& manifestPath, std::wstring& displayName,
                     std::wstring& logo);

  /// Checks and loads the library into collectorModule; logs a failure.
  [[nodiscard]] bool LoadCollector();
  /// Makes and starts the collector; logs the outcome. The library's exceptions propagate.
  [[nodiscard]] CollectorVerdict StartCollector();
  /// Sets the support state and the flags that follow from a verdict.
  void TakeVerdict(CollectorVerdict verdict);
  /// Destroys the collector, whose exceptions are dropped, and frees its library.
  void UnloadCollector();

  struct CollectorPolicy {
    using Type = DataCollector*;
    static Type Empty() { return nullptr; }
    static void Release(Type object) { delete object; }
  };

  // The worker writes both; the thread that destroys the helper reads them.
  Platform::SharedResource<CollectorPolicy> collector;
  Platform::SharedResource<Platform::ModulePolicy> collectorModule;
  std::atomic<int> PlatformSupportState = Shared::WMI::kPlatformUndecided;
  std::atomic<bool> dataAvailable = false;
  /// Watt-hours by day (ledger/power_ledger.h). Guarded by dataMutex.
  PowerLedger dailyLedger;
  Published<DesktopApps> win32Apps;
  Published<PackagedApps> uwpApps;
  // Kept on purpose: nothing ever clears it, so every query returns true.
  std::atomic<bool> dataChanged = true;
  /// Guards StartCollection against a second run.
  std::atomic<bool> collectionStarted = false;
  /// Kept on purpose: nothing ever fills it. Guarded by dataMutex for writing.
  std::wstring errorsAndWarningsJson;
  /// The data folder, without a separator at its end.
  const wchar_t* collectionPath = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
  /// The folder of the process's executable, without a separator at its end.
  std::wstring hostDirectory;
  const wchar_t* collectorFileName = L"TelemetryZQXWrapper.dll";
  std::unique_ptr<std::thread> worker;
  /// True while the worker may start another pass.
  std::atomic<bool> running = false;
  std::mutex dataMutex;
  /// Held while the 30-day store is open, and for nothing else: a reader must not make the
  /// conversion's save fail after the report is deleted.
  std::mutex storeMutex;

  /// What a ledger pass keeps until its end.
  struct LedgerPass {
    /// Encrypted sample files that the pass deletes once the ledger is saved, in the order of
    /// deletion. Until then they count as deleted.
    std::vector<std::wstring> discardedSamples;
    /// Only a pass reuses what it decrypted and parsed: each command reads the current files.
    RecentSamples recentSamples;
    RecentDays recentDays;
  };
  /// Empty between passes. Guarded by dataMutex.
  std::optional<LedgerPass> runningPass;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
