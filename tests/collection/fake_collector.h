#pragma once

#include <functional>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "collection/data_collector.h"
#include "support/call_record.h"

namespace TestSupport {

/// How the fake collector behaves, and a record of the calls to it.
struct CollectorScript {
  bool loads = true;
  std::map<int, int> status{{0, 1}};
  /// Called at the end of each call, with its name; may throw.
  std::function<void(const std::string& call)> onCall;
  /// The calls by name: create, load, callback, start, stop, destroy; free is of the library.
  std::vector<std::string> calls;
  /// If not null, receives "collector <call>" for each of them.
  CallRecord* record = nullptr;
  /// The kinds of data passed to the last start or stop.
  std::vector<int> kinds;
  Zq::Gantry::Server::Services::Wattleaf::CollectorCallback callback = nullptr;

  void Enter(const std::string& call) {
    calls.push_back(call);
    if (record != nullptr) record->Add("collector " + call);
    if (onCall) onCall(call);
  }
};

class FakeCollector final : public Zq::Gantry::Server::Services::Wattleaf::DataCollector {
 public:
  explicit FakeCollector(CollectorScript& script) : script_(script) {}
  ~FakeCollector() noexcept(false) override { script_.Enter("destroy"); }

  bool OnLoad() override {
    script_.Enter("load");
    return script_.loads;
  }
  std::map<int, int> StartCollecting(const std::vector<int>& kinds) override {
    script_.kinds = kinds;
    script_.Enter("start");
    return script_.status;
  }
  std::map<int, int> StopCollecting(const std::vector<int>& kinds) override {
    script_.kinds = kinds;
    script_.Enter("stop");
    return script_.status;
  }
  void SetDataCallback(
      Zq::Gantry::Server::Services::Wattleaf::CollectorCallback callback) override {
    script_.callback = callback;
    script_.Enter("callback");
  }

 private:
  CollectorScript& script_;
};

}  // namespace TestSupport
