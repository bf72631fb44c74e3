// The collector after its start: StopCollection, the helper's destructor, the collector's callback.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <stdexcept>
#include <string>

#include "collection/collector_fixture.h"

using namespace TestSupport;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;

namespace {

using StopCollection = CollectorFixture;
using WattleafHelperDestructor = CollectorFixture;
using MyNativeCallback = CollectorFixture;

}  // namespace

TEST_F(StopCollection, DoesNothingWithoutACollector) {
  helper->StopCollection();
  EXPECT_THAT(library.script.calls, IsEmpty());
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(StopCollection, StopsPowerSamplesAndLeavesTheLibraryLoaded) {
  StartTrusted();
  library.script.kinds.clear();
  helper->StopCollection();
  EXPECT_THAT(library.script.calls, Contains("stop"));
  EXPECT_THAT(library.script.kinds, ElementsAre(0));
  EXPECT_NE(helper->collector.get(), nullptr);
  EXPECT_EQ(library.freed, 0);
}

TEST_F(WattleafHelperDestructor, StopsDestroysAndFreesTheCollectorInThisOrder) {
  StartTrusted();
  library.script.calls.clear();
  helper.reset();
  EXPECT_THAT(library.script.calls, ElementsAre("stop", "destroy", "free"));
}

TEST_F(WattleafHelperDestructor, IgnoresExceptionsFromTheCollector) {
  for (const char* call : {"stop", "destroy"}) {
    for (const bool isStandard : {true, false}) {
      SCOPED_TRACE(testing::Message() << call << (isStandard ? " standard" : " other"));
      helper = std::make_unique<OpenHelper>();
      helper->PlatformSupportState = 1;
      helper->collectionPath = dataFolder.c_str();
      library.script.onCall = nullptr;
      StartTrusted();
      library.script.calls.clear();
      isStandard ? ThrowIn(call, std::runtime_error("late")) : ThrowIn(call, 5);
      helper.reset();
      EXPECT_THAT(library.script.calls, ElementsAre("stop", "destroy", "free"));
    }
  }
}

TEST_F(WattleafHelperDestructor, StopsACollectorThatRefusedToStart) {
  library.script.status = {{0, 0}};
  StartTrusted();
  library.script.calls.clear();
  helper.reset();
  EXPECT_THAT(library.script.calls, ElementsAre("stop", "destroy", "free"));
}

TEST_F(MyNativeCallback, SetsDataChangedOnlyForAPositiveCount) {
  StartTrusted();
  ASSERT_NE(library.script.callback, nullptr);
  auto& changed = OpenHelper::Instance().*(&OpenHelper::dataChanged);
  ASSERT_TRUE(changed);
  changed = false;
  library.script.callback(nullptr, 0);
  EXPECT_FALSE(changed);
  library.script.callback(nullptr, -1);
  EXPECT_FALSE(changed);
  library.script.callback(nullptr, 1);
  EXPECT_TRUE(changed);
}

TEST_F(MyNativeCallback, LeavesDataChangedForNoItems) {
  auto& changed = WattleafHelper::Instance().*(&OpenHelper::dataChanged);
  changed = false;
  OpenHelper::MyNativeCallback(nullptr, 0);
  EXPECT_FALSE(changed);
  OpenHelper::MyNativeCallback(nullptr, 3);
  EXPECT_TRUE(changed);
}
