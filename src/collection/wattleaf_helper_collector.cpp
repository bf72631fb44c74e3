#include "collection/wattleaf_helper.h"

#include <windows.h>

#include <exception>
#include <map>
#include <string>
#include <vector>

#include "base/byte_text.h"
#include "base/plain_file.h"
#include "collection/collector_status.h"
#include "logging/trace_logger.h"
#include "platform/wmi/support_decision.h"
#include "security/trust/trusted_keys.h"
#include "security/trust/zq_authenticode_helper.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using Logging::LogManager;
using Security::ZQAuthenticodeHelper;

bool IsCollectorTrusted(const std::wstring& path) {
  return ZQAuthenticodeHelper::IsFileTrusted(path.c_str(), &Security::ServiceTrustedKeys) &&
         ZQAuthenticodeHelper::IsPathAllowed(path.c_str());
}

std::wstring JoinPath(const std::wstring& directory, const wchar_t* fileName) {
  return directory.empty() ? fileName : directory + L"\\" + fileName;
}

void LogVerdict(CollectorVerdict verdict) {
  Logging::TraceLogger& log = *LogManager::GetLogger();
  switch (verdict) {
    case CollectorVerdict::kStarted:
      return log.LogInfo(L"DataCollector StartCollecting() success\n ");
    case CollectorVerdict::kFirmwareTooOld:
      return log.LogError(L"DataCollector StartCollecting() failed. Firmware update required\n");
    case CollectorVerdict::kDeviceNotSupported:
      return log.LogError(L"DataCollector StartCollecting() failed. Device not supported.\n");
    case CollectorVerdict::kNoStatus:
      return log.LogError(L"DataCollector StartCollecting() failed.\n");
    case CollectorVerdict::kUnknownFailure:
      return;
  }
}

}  // namespace

bool WattleafHelper::StartCollection() {
  if (IsPlatformSupported() != Shared::WMI::kPlatformSupported) return false;
  // Kept on purpose: a second call succeeds without work, even if the first one failed.
  if (collectionStarted.exchange(true, std::memory_order_relaxed)) return true;
  // Failure is ignored: without the folder there are no samples, and the passes find none.
  static_cast<void>(CreateDirectoryTree(collectionPath));

  bool keepLoaded = false;
  bool started = false;
  try {
    if (!LoadCollector()) return false;
    const CollectorVerdict verdict = StartCollector();
    keepLoaded = KeepsCollectorLoaded(verdict);
    started = verdict == CollectorVerdict::kStarted;
  } catch (const std::exception& failure) {
    const std::string what = failure.what();
    LogManager::GetLogger()->LogError(L"Exception in  StartCollection() - %s.\n",
                                      WidenBytes(what.data(), what.data() + what.size()).c_str());
  } catch (...) {
    LogManager::GetLogger()->LogError(L"Exception in  StartCollection() - \n");
  }
  // Only after the handlers: the exception object may live in the collector's module.
  if (!keepLoaded) UnloadCollector();
  return started;
}

bool WattleafHelper::LoadCollector() {
  // Kept on purpose: the checks look at the file beside the host, but the load passes only its name
  // and leaves the search to the system, which begins in that same directory.
  if (IsCollectorTrusted(JoinPath(hostDirectory, collectorFileName))) {
    collectorModule.reset(LoadLibraryW(collectorFileName));
  }
  if (collectorModule) return true;
  LogManager::GetLogger()->LogWarning(L"Unable to load DataCollector library.");
  return false;
}

CollectorVerdict WattleafHelper::StartCollector() {
  Logging::TraceLogger& log = *LogManager::GetLogger();
  const auto create = reinterpret_cast<CreateCollector>(
      reinterpret_cast<void*>(GetProcAddress(collectorModule.get(), kCreateCollectorExport)));
  if (create == nullptr) {
    log.LogError(L"Unable to find methods in DataCollector.\n");
    return CollectorVerdict::kUnknownFailure;
  }
  DataCollector* const made = create();
  collector.reset(made);
  log.LogInfo(L"Loaded DataCollector library\n");
  // A null object counts as one that cannot work.
  if (made == nullptr || !made->OnLoad()) {
    log.LogError(L"DataCollector OnLoad() failed.\n");
    return CollectorVerdict::kUnknownFailure;
  }
  made->SetDataCallback(&WattleafHelper::MyNativeCallback);
  const CollectorVerdict verdict =
      JudgeCollectorStatus(made->StartCollecting(std::vector<int>{kPowerSamples}));
  TakeVerdict(verdict);
  LogVerdict(verdict);
  return verdict;
}

void WattleafHelper::TakeVerdict(CollectorVerdict verdict) {
  if (verdict == CollectorVerdict::kStarted) dataAvailable.store(true, std::memory_order_relaxed);
  if (const auto state = SupportStateOf(verdict)) {
    PlatformSupportState.store(*state, std::memory_order_relaxed);
  }
}

void WattleafHelper::UnloadCollector() {
  try {
    delete collector.release();
  } catch (...) {
    // Dropped: the collector's object is gone, and no caller could handle the failure.
  }
  collectorModule.reset();
}

void WattleafHelper::StopCollection() {
  DataCollector* const loaded = collector.get();
  if (loaded == nullptr) return;
  static_cast<void>(loaded->StopCollecting(std::vector<int>{kPowerSamples}));
}

void WattleafHelper::MyNativeCallback(const char**, int count) {
  if (count > 0) Instance().dataChanged.store(true, std::memory_order_relaxed);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
