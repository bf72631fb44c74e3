#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "collection/data_collector.h"

namespace TestSupport {

/// What the played collector library is to do, and what was done to it.
struct CollectorScript {
  bool loads = true;
  std::map<int, int> status{{0, 1}};
  std::function<void()> onStart;    ///< called before the status is returned; may throw
  std::function<void()> onDestroy;  ///< called by the destructor; may throw
  std::vector<std::string> calls;
  std::vector<int> kinds;
  Zq::Gantry::Server::Services::Wattleaf::CollectorCallback callback = nullptr;
};

class FakeCollector final : public Zq::Gantry::Server::Services::Wattleaf::DataCollector {
 public:
  explicit FakeCollector(CollectorScript& script) : script_(script) {}
  ~FakeCollector() noexcept(false) override {
    script_.calls.push_back("destroy");
    if (script_.onDestroy) script_.onDestroy();
  }

  bool OnLoad() override {
    script_.calls.push_back("load");
    return script_.loads;
  }
  std::map<int, int> StartCollecting(const std::vector<int>& kinds) override {
    script_.calls.push_back("start");
    script_.kinds = kinds;
    if (script_.onStart) script_.onStart();
    return script_.status;
  }
  std::map<int, int> StopCollecting(const std::vector<int>& kinds) override {
    script_.calls.push_back("stop");
    script_.kinds = kinds;
    return script_.status;
  }
  void SetDataCallback(
      Zq::Gantry::Server::Services::Wattleaf::CollectorCallback callback) override {
    script_.calls.push_back("callback");
    script_.callback = callback;
  }

 private:
  CollectorScript& script_;
};

}  // namespace TestSupport
