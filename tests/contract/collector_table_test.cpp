#include "contract/raw_table.h"

#include <gmock/gmock.h>

#include <string>

#include "collection/data_collector.h"

// Calls to the collector by name must use the slots of the closed library.
namespace Zq::Gantry::Server::Services::Wattleaf {
namespace {

using testing::ElementsAre;
using testing::Pair;
using TestSupport::CallSlot;
using TestSupport::CallSlotForObject;
using TestSupport::DestroyThroughSlot;

std::vector<std::string> calls;

class RecordingCollector : public DataCollector {
 public:
  ~RecordingCollector() noexcept(false) override { calls.push_back("destructor"); }
  bool OnLoad() override {
    calls.push_back("OnLoad");
    return true;
  }
  std::map<int, int> StartCollecting(const std::vector<int>& kinds) override {
    calls.push_back("StartCollecting");
    return {{kinds.front(), -1}, {9, 8}};
  }
  std::map<int, int> StopCollecting(const std::vector<int>& kinds) override {
    calls.push_back("StopCollecting");
    return {{kinds.back(), 4}};
  }
  void SetDataCallback(CollectorCallback callback) override {
    calls.push_back("SetDataCallback");
    callback(nullptr, 5);
  }
};

void RecordCallback(const char** items, int count) {
  EXPECT_EQ(items, nullptr);
  calls.push_back("callback " + std::to_string(count));
}

TEST(CollectorTable, HoldsTheFiveOperationsInOrder) {
  calls.clear();
  auto* collector = new RecordingCollector();
  const std::vector<int> kinds{0, 3};

  EXPECT_TRUE(CallSlot<bool>(collector, 0));
  const auto started =
      CallSlotForObject<std::map<int, int>, const std::vector<int>*>(collector, 1, &kinds);
  EXPECT_THAT(started, ElementsAre(Pair(0, -1), Pair(9, 8)));
  const auto stopped =
      CallSlotForObject<std::map<int, int>, const std::vector<int>*>(collector, 2, &kinds);
  EXPECT_THAT(stopped, ElementsAre(Pair(3, 4)));
  CallSlot<void, CollectorCallback>(collector, 3, &RecordCallback);
  DestroyThroughSlot(collector, 4);

  EXPECT_THAT(calls, ElementsAre("OnLoad", "StartCollecting", "StopCollecting", "SetDataCallback",
                                 "callback 5", "destructor"));
}

TEST(CollectorTable, IsTheOnlyFieldOfACollector) {
  EXPECT_EQ(sizeof(DataCollector), sizeof(void*));
}

TEST(CreateCollectorExport, IsCreateZQXExportClass) {
  EXPECT_STREQ(kCreateCollectorExport, "CreateZQXExportClass");
}

}  // namespace
}  // namespace Zq::Gantry::Server::Services::Wattleaf
