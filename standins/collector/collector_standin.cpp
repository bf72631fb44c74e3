// Stand-in for the closed collector library TelemetryZQXWrapper.dll. Measures nothing: on
// StartCollecting it writes days of samples in the real format from a seeded model of a notebook,
// and the plain truth beside the data folder, for tests.
//
// Variables of the environment choose how it behaves:
//   WATTLEAF_COLLECTOR_STATUS   the status at key 0 as a number (1 where the variable is not set),
//                               "missing" for a map without that key, or "onload-false". Files are
//                               written at status 1 only.
//   WATTLEAF_COLLECTOR_FAILURE  "<call> standard" or "<call> other": that call throws a
//                               std::runtime_error or an int. The calls are create, load, callback,
//                               start, stop and destroy.
//   WATTLEAF_COLLECTOR_LOCK     "held": a thread of the collector holds its lock for ever, and
//                               StopCollecting and the destructor wait for that lock.
//   WATTLEAF_COLLECTOR_CALLS    a file that gets one line for each call, and "unload" when the
//                               library is freed before the process ends.
// The other variables are described in collector_settings.h.

#include <windows.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "collection/data_collector.h"
#include "collector_failures.h"
#include "collector_lock.h"
#include "collector_settings.h"
#include "sample_store.h"

namespace {

using Zq::Gantry::Server::Services::Wattleaf::CollectorCallback;
using Zq::Gantry::Server::Services::Wattleaf::DataCollector;

std::unique_ptr<Standin::SampleStore>& Store() {
  static std::unique_ptr<Standin::SampleStore> store;
  return store;
}

class CollectorStandin final : public DataCollector {
 public:
  explicit CollectorStandin(Standin::CollectorSettings settings) : settings_(std::move(settings)) {
    if (settings_.holdsLock) Standin::HoldLockForEver();
  }
  ~CollectorStandin() noexcept(false) override {
    Enter("destroy");
    Standin::PassThroughLock();
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
    Standin::PassThroughLock();
    return {};
  }

  void SetDataCallback(CollectorCallback callback) override {
    Enter("callback");
    callback_ = callback;
  }

 private:
  void Enter(const char* call) const { Standin::EnterCall(settings_.failure, call); }

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
  Standin::EnterCall(settings.failure, "create");
  return new CollectorStandin(std::move(settings));
}

/// Of the stand-in only: goes on to `nowUnix`, in seconds since 1970. Does nothing before
/// collecting has started.
extern "C" __declspec(dllexport) void AdvanceCollector(long long nowUnix) {
  if (Store() != nullptr) Store()->Advance(nowUnix);
}

// The system passes a null pointer where the library is freed, another where the process ends.
BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* reserved) {
  if (reason == DLL_PROCESS_DETACH && reserved == nullptr) Standin::RecordCall("unload");
  return TRUE;
}
