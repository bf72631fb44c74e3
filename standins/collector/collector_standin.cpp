// Stand-in for the closed collector library TelemetryZQXWrapper.dll. Measures nothing: on
// StartCollecting it writes days of samples in the real format from a seeded model of a notebook,
// and the plain truth beside the data folder, for tests.
//
// WATTLEAF_COLLECTOR_STATUS chooses how it behaves: the status at key 0 as a number (1 where the
// variable is unset), "missing" for a map without that key, "onload-false", "throw-standard" or
// "throw-other". Files are written at status 1 only. The other variables stand in
// collector_settings.h.

#include <map>
#include <memory>
#include <stdexcept>
#include <vector>

#include "collection/data_collector.h"
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
  bool OnLoad() override { return settings_.status != "onload-false"; }

  std::map<int, int> StartCollecting(const std::vector<int>& kinds) override {
    if (settings_.status == "throw-standard") throw std::runtime_error("told to throw");
    if (settings_.status == "throw-other") throw 7;
    if (settings_.status == "missing") return {};
    const int status = settings_.status.empty() ? 1 : std::stoi(settings_.status);
    if (status == 1) WriteDays();
    std::map<int, int> statuses;
    for (const int kind : kinds) statuses[kind] = status;
    return statuses;
  }

  std::map<int, int> StopCollecting(const std::vector<int>&) override { return {}; }

  void SetDataCallback(CollectorCallback callback) override { callback_ = callback; }

 private:
  void WriteDays() {
    Store() = std::make_unique<Standin::SampleStore>(settings_);
    Store()->WriteFirstDays();
    const char* item = "PCM_SENSOR";
    if (callback_ != nullptr) callback_(&item, 1);
  }

  Standin::CollectorSettings settings_ = Standin::ReadCollectorSettings();
  CollectorCallback callback_ = nullptr;
};

}  // namespace

extern "C" __declspec(dllexport) DataCollector* CreateZQXExportClass() {
  return new CollectorStandin();
}

/// Of the stand-in only: goes on to `nowUnix`, in seconds since 1970. Does nothing before
/// collecting has started.
extern "C" __declspec(dllexport) void AdvanceCollector(long long nowUnix) {
  if (Store() != nullptr) Store()->Advance(nowUnix);
}
