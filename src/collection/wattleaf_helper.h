#pragma once

#include <windows.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/calendar.h"
#include "base/json_document.h"
#include "catalogue/installed_apps.h"
#include "collection/collector_status.h"
#include "collection/data_collector.h"
#include "platform/win32/owners.h"
#include "platform/win32/unique_resource.h"
#include "platform/wmi/support_decision.h"
#include "wattleaf_export.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The one object that holds the system's state. Its operations take the lock, log, call the rules
/// of the other folders and hand over; nothing outside service/ and collection/ knows it.
///
/// The flags and PlatformSupportState are single words with one meaning each, read and written
/// without a lock and without order among them: a late view does no harm.
class WATTLEAF_API WattleafHelper {
 public:
  /// The one object, made on first use; concurrent first calls make one. Destroyed by the library's
  /// static clean-up when the library is freed; given up without a call when the process ends.
  static WattleafHelper& Instance();

  WattleafHelper(const WattleafHelper&) = delete;
  WattleafHelper& operator=(const WattleafHelper&) = delete;
  ~WattleafHelper();

  /// Decides, checks and loads the collector, once per process. True means that collection runs.
  bool StartCollection();
  /// Asks a loaded collector to stop; it stays loaded.
  void StopCollection();
  /// Starts the worker thread. A second call gives the first thread up; it goes on without owner.
  void StartProcessing();

  /// 1 supported, 0 not supported, -1 firmware update required; probes once.
  int IsPlatformSupported();
  bool IsDataChanged();
  bool IsDataAvailable();

  /// Watt-hours per day, over today and the six days before it.
  float GetDailyAveragePowerConsumption();
  float GetTreeSavedCount();

  /// The last twelve hours, seven days and six months as JSON. On a failure, which is logged,
  /// `result` stays as it was.
  void GetDailyPowerConsumption(std::wstring& result);
  void GetWeeklyPowerConsumption(std::wstring& result);
  void GetMonthlyPowerConsumption(std::wstring& result);

  /// The applications with the largest share as JSON; `request` names the icon directory and days.
  void GetTop20PowerApps(std::wstring& request, std::wstring& result);
  void GetErrorsAndWarnings(std::wstring& result);

 protected:
  WattleafHelper();

  static void MyNativeCallback(const char** items, int count);

  /// The device path behind a drive such as "C:"; empty if there is none.
  std::string GetDevicePath(std::string drive);

  /// The worker's body.
  void ProcessingCallback();

  /// One day's samples; the caller owns the document, which is null for a copy that does not parse.
  /// The caller holds dataMutex.
  GenericDocument* GetJsonFromDate(const DateTime& day);

  /// The daily pass; holds dataMutex for its whole run.
  void CalculateDailyPowerConsumption();
  /// Watt-hours of one day. The caller holds dataMutex.
  float CalculateDailyPowerConsumption(const DateTime& day);
  /// Watt-hours by hour of the day, for hours that booked something. The caller holds dataMutex.
  std::map<int, float> GetPowerConsumption(const DateTime& day);

  void ConvertPowerLogXmltoJson();
  void OnGetTop20PowerApps();
  void OnGetErrorAndWarnings();

  void LoadInstalledWin32Apps();
  void LoadInstalledUWPApps();
  void ParseManifest(const std::wstring& manifestPath, std::wstring& displayName,
                     std::wstring& logo);

  /// Checks and loads the library into collectorModule; logs a failure.
  bool LoadCollector();
  /// Makes the collector and tells it to start; logs the outcome. Lets the library's exceptions
  /// out.
  CollectorVerdict StartCollector();
  void TakeVerdict(CollectorVerdict verdict);
  /// Destroys the collector and frees its library.
  void UnloadCollector();

  struct CollectorPolicy {
    using Type = DataCollector*;
    static Type Empty() { return nullptr; }
    static void Release(Type object) { delete object; }
  };

  // The worker writes both; the thread that ends the helper reads them.
  Platform::SharedResource<CollectorPolicy> collector;
  Platform::SharedResource<Platform::ModulePolicy> collectorModule;
  std::atomic<int> PlatformSupportState = Shared::WMI::kPlatformUndecided;
  std::atomic<bool> dataAvailable = false;
  std::map<DateTime, float> dailyLedger;
  Published<DesktopApps> win32Apps;
  Published<PackagedApps> uwpApps;
  // Kept on purpose: nothing ever clears it, so every query answers true.
  std::atomic<bool> dataChanged = true;
  std::atomic<bool> collectionStarted = false;
  std::wstring errorsAndWarningsJson;
  const wchar_t* collectionPath = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
  std::wstring hostDirectory;
  const wchar_t* collectorFileName = L"TelemetryZQXWrapper.dll";
  std::unique_ptr<std::thread> worker;
  std::atomic<bool> running = false;
  std::mutex dataMutex;
  /// Held while the 30-day store is open, and for nothing else: a reader must not make the
  /// conversion's save fail after the report is gone.
  std::mutex storeMutex;
  /// Encrypted sample files that the running pass deletes once the ledger is saved; until then they
  /// count as gone. In the order of deletion; empty between passes. Guarded by dataMutex.
  std::vector<std::wstring> discardedSamples;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
