#include "collection/wattleaf_helper.h"

#include <array>
#include <system_error>

#include "platform/wmi/platform_probes.h"
#include "platform/wmi/support_decision.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

namespace WMI = Zq::Gantry::Server::Shared::WMI;

/// True if the process is ending, as opposed to the library being freed. Set just before the
/// library's static clean-up: by then the system has killed all other threads, and other libraries
/// may have been cleaned up already.
bool isProcessEnding = false;

/// Directory of the process's executable, without trailing separator; empty if it has none.
std::wstring HostDirectory() {
  std::array<wchar_t, 260> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  path.back() = L'\0';
  const std::wstring full = path.data();
  const auto separator = full.find_last_of(L"\\/");
  return separator == std::wstring::npos ? std::wstring() : full.substr(0, separator);
}

bool TryDetach(std::thread& thread) {
  try {
    thread.detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

/// Waits for the thread and deletes its object. A thread that cannot be joined is detached. If that
/// fails too, its object is leaked: deleting a joinable thread ends the process.
void EndThread(std::unique_ptr<std::thread> thread) {
  try {
    thread->join();
  } catch (const std::system_error&) {
    if (!TryDetach(*thread) && thread->joinable()) static_cast<void>(thread.release());
  }
}

}  // namespace

WattleafHelper& WattleafHelper::Instance() {
  // The object is destroyed when the library is freed, and abandoned when the process ends: then
  // the other threads have been killed at any point, perhaps while they held the collector's locks
  // or changed a field, and the collector's library has been cleaned up already.
  union Storage {
    Storage() : helper() {}
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;
    ~Storage() {
      if (!isProcessEnding) helper.~WattleafHelper();
    }
    WattleafHelper helper;
  };
  static Storage storage;
  return storage.helper;
}

WattleafHelper::WattleafHelper() : hostDirectory(HostDirectory()) {}

WattleafHelper::~WattleafHelper() {
  running.store(false, std::memory_order_relaxed);
  if (worker != nullptr) EndThread(std::move(worker));
  try {
    StopCollection();
  } catch (...) {
    // Dropped: the library is being freed, and no caller could handle the failure.
  }
  UnloadCollector();
}

std::string WattleafHelper::GetDevicePath(std::string drive) {
  std::array<char, 1024> buffer{};
  const auto capacity = static_cast<DWORD>(buffer.size());
  if (QueryDosDeviceA(drive.c_str(), buffer.data(), capacity) == 0) return {};
  buffer.back() = '\0';
  return buffer.data();  // the first of several texts
}

bool WattleafHelper::IsDataChanged() { return dataChanged.load(std::memory_order_relaxed); }

bool WattleafHelper::IsDataAvailable() { return dataAvailable.load(std::memory_order_relaxed); }

int WattleafHelper::IsPlatformSupported() {
  const int known = PlatformSupportState.load(std::memory_order_relaxed);
  if (known != WMI::kPlatformUndecided) return known;

  const int decided =
      WMI::DecidePlatformSupport(WMI::ReadBiosPlatformFlag, WMI::FindCarbonSupportOemString);
  // The probes take long enough for the collector, or another thread, to decide the state
  // meanwhile: the first value that was stored stays.
  int stored = WMI::kPlatformUndecided;
  const bool isFirst =
      PlatformSupportState.compare_exchange_strong(stored, decided, std::memory_order_relaxed);
  return isFirst ? decided : stored;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf

// Called before the static clean-up. On DLL_PROCESS_DETACH the system passes null if the library is
// freed, and another pointer if the process ends. Nothing else is done here.
extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_DETACH) {
    Zq::Gantry::Server::Services::Wattleaf::isProcessEnding = reserved != nullptr;
  }
  return TRUE;
}
