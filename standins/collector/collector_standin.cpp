// Stand-in for the closed collector library TelemetryZQXWrapper.dll. It measures nothing:
// StartCollecting writes days of samples in the real format, made by a seeded model of a notebook,
// and for tests the same samples in plain text beside the data folder.
//
// Environment variables choose what it does:
//   WATTLEAF_COLLECTOR_STATUS   the status at key 0 as a number (1 if the variable is not set),
//                               "missing" for a map without that key, or "onload-false". It writes
//                               files at status 1 only.
//   WATTLEAF_COLLECTOR_FAILURE  "<call> standard" or "<call> other": that call throws a
//                               std::runtime_error or an int. The calls are create, load, callback,
//                               start, stop and destroy.
//   WATTLEAF_COLLECTOR_LOCK     "held": a thread of the collector holds its lock forever;
//                               StopCollecting and the destructor wait for that lock, as with a
//                               real collector whose thread was killed inside its lock.
//   WATTLEAF_COLLECTOR_CALLS    a file to which each call appends its name, and "unload" when the
//                               library is freed before the process ends.
// collector_settings.h describes the other variables.

#include <windows.h>

#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "collection/data_collector.h"
#include "collector_settings.h"
#include "environment.h"
#include "platform/win32/owners.h"
#include "sample_store.h"

namespace {

using Zq::Gantry::Platform::UniqueFileHandle;
using Zq::Gantry::Server::Services::Wattleaf::CollectorCallback;
using Zq::Gantry::Server::Services::Wattleaf::DataCollector;

/// The text of the simulated standard exception, which must not be used as a format.
constexpr char kSimulatedFailure[] = "sensor at 100% of %s, %d and %n";

/// Appends `call` as a line to the file that WATTLEAF_COLLECTOR_CALLS names; does nothing if the
/// variable is not set. Also called while the library is unloaded and while the process ends.
void RecordCall(const char* call) {
  const std::wstring path = Standin::ReadVariable(L"WATTLEAF_COLLECTOR_CALLS");
  if (path.empty()) return;
  const UniqueFileHandle file(
      CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  /*security=*/nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, /*template=*/nullptr));
  const std::string line = std::string(call) + "\n";
  DWORD written = 0;
  WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written,
            /*overlapped=*/nullptr);
}

/// Records the call, then throws the exception that `failure` chooses for it.
void EnterCall(const std::string& failure, const std::string& call) {
  RecordCall(call.c_str());
  if (failure == call + " standard") throw std::runtime_error(kSimulatedFailure);
  if (failure == call + " other") throw 7;
}

/// Never destroyed: its thread holds it until the process ends.
std::mutex& CollectorLock() {
  static std::mutex& lock = *new std::mutex;
  return lock;
}

/// Starts a thread that takes the lock and never releases it; returns when the thread has it.
void HoldLockForEver() {
  std::promise<void> taken;
  const std::future<void> isTaken = taken.get_future();
  std::thread([taken = std::move(taken)]() mutable {
    CollectorLock().lock();
    taken.set_value();
    Sleep(INFINITE);
  }).detach();
  isTaken.wait();
}

void WaitForLock() { const std::lock_guard guard(CollectorLock()); }

std::unique_ptr<Standin::SampleStore>& Store() {
  static std::unique_ptr<Standin::SampleStore> store;
  return store;
}

class CollectorStandin final : public DataCollector {
 public:
  explicit CollectorStandin(Standin::CollectorSettings settings) : settings_(std::move(settings)) {
    if (settings_.holdsLock) HoldLockForEver();
  }
  ~CollectorStandin() noexcept(false) override {
    Enter("destroy");
    WaitForLock();
  }

  bool OnLoad() override {
    Enter("load");
    return settings_.status != "onload-false";
  }

  std::map<int, int> StartCollecting(const std::vector<int>& kinds) override {
    Enter("start");
    if (settings_.status == "missing") return {};
    const int status = settings_.status.empty() ? 1 : std::stoi(settings_.status);
    if (status == 1) WriteDays();
    std::map<int, int> statuses;
    for (const int kind : kinds) statuses[kind] = status;
    return statuses;
  }

  std::map<int, int> StopCollecting(const std::vector<int>&) override {
    Enter("stop");
    WaitForLock();
    return {};
  }

  void SetDataCallback(CollectorCallback callback) override {
    Enter("callback");
    callback_ = callback;
  }

 private:
  void Enter(const char* call) const { EnterCall(settings_.failure, call); }

  void WriteDays() {
    Store() = std::make_unique<Standin::SampleStore>(settings_);
    Store()->WriteFirstDays();
    const char* item = "PCM_SENSOR";
    if (callback_ != nullptr) callback_(&item, 1);
  }

  const Standin::CollectorSettings settings_;
  CollectorCallback callback_ = nullptr;
};

}  // namespace

extern "C" __declspec(dllexport) DataCollector* CreateZQXExportClass() {
  Standin::CollectorSettings settings = Standin::ReadCollectorSettings();
  EnterCall(settings.failure, "create");
  return new CollectorStandin(std::move(settings));
}

/// Only in the stand-in: continues to write samples up to `nowUnix`, in seconds since 1970. Does
/// nothing before collecting has started.
extern "C" __declspec(dllexport) void AdvanceCollector(long long nowUnix) {
  if (Store() != nullptr) Store()->Advance(nowUnix);
}

// `reserved` is null if the library is freed, and not null if the process ends.
BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_DETACH && reserved == nullptr) RecordCall("unload");
  return TRUE;
}
