#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <future>
#include <memory>
#include <system_error>
#include <vector>

#include "catalogue/fake_packages.h"
#include "collection/fake_tool.h"
#include "collection/open_helper.h"
#include "import_patch.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<DWORD> sleeps;
std::promise<void>* untilReleased = nullptr;
std::function<void()> duringTheDay;
std::vector<int> priorities;

void WINAPI FakeSleep(DWORD milliseconds) {
  if (milliseconds == 0) return;  // the thread library gives way
  sleeps.push_back(milliseconds);
  if (milliseconds == 86400000) {
    if (duringTheDay) duringTheDay();
    return;
  }
  if (untilReleased != nullptr) untilReleased->get_future().wait();
}

BOOL WINAPI FakePriority(HANDLE thread, int value) {
  EXPECT_NE(GetThreadId(thread), 0U) << "a real thread handle";
  EXPECT_NE(GetThreadId(thread), GetCurrentThreadId());
  priorities.push_back(value);
  return FALSE;
}

class ProcessingWorker : public testing::Test {
 protected:
  ProcessingWorker() {
    sleeps.clear();
    untilReleased = nullptr;
    duringTheDay = nullptr;
    priorities.clear();
    // Without support the collector does not start, and the worker ends after its delay.
    helper->PlatformSupportState = 0;
  }

  /// A collector that has been started before, which is a success; no files.
  void LetTheCollectorStart() {
    helper->PlatformSupportState = 1;
    helper->collectionStarted = true;
    helper->collectionPath = folder.Path().c_str();
  }

  const TempFolder folder;
  LogCapture log;
  const FakeTool tool;
  // Nothing is installed.
  FakePackages packages;
  ImportPatch patchedSleep{"Sleep", &FakeSleep};
  std::unique_ptr<OpenHelper> helper = std::make_unique<OpenHelper>();
};

}  // namespace

TEST_F(ProcessingWorker, RunsOnAThreadOfTheLowestPriorityWhateverThatCallSays) {
  const ImportPatch patch("SetThreadPriority", &FakePriority);
  helper->StartProcessing();
  EXPECT_TRUE(helper->running);
  ASSERT_NE(helper->worker, nullptr);
  helper.reset();
  // The thread library sets the priority of its own accord while it makes the thread.
  ASSERT_FALSE(priorities.empty());
  EXPECT_EQ(priorities.back(), -2);
  EXPECT_EQ(std::count(priorities.begin(), priorities.end(), -2), 1);
}

TEST_F(ProcessingWorker, EndsAfterTheDelayWhereTheCollectorDoesNotStart) {
  helper->StartProcessing();
  helper->worker->join();
  EXPECT_THAT(sleeps, ElementsAre(90000U));
  EXPECT_THAT(log.Records(), IsEmpty()) << "no pass has run";
  EXPECT_TRUE(helper->dailyLedger.empty());
  EXPECT_NE(helper->worker, nullptr) << "the thread object stays";
}

TEST_F(ProcessingWorker, APassUpdatesTheLedgerAndRaisesTheFlagAndThenADayIsSlept) {
  LetTheCollectorStart();
  helper->running = true;
  duringTheDay = [this] {
    EXPECT_EQ(helper->dailyLedger.size(), 211U);
    EXPECT_TRUE(FileExists(folder.File(L"PowerConsumption.json")));
    EXPECT_TRUE(helper->IsDataAvailable());
    helper->running = false;
  };
  helper->ProcessingCallback();
  EXPECT_THAT(sleeps, ElementsAre(90000U, 86400000U));
}

TEST_F(ProcessingWorker, GoesOnWithAPassEachDayForAsLongAsItIsRunning) {
  LetTheCollectorStart();
  helper->running = true;
  duringTheDay = [this] { helper->running = sleeps.size() < 4; };
  helper->ProcessingCallback();
  EXPECT_THAT(sleeps, ElementsAre(90000U, 86400000U, 86400000U, 86400000U));
  const std::vector<LogRecord> records = log.Records();
  EXPECT_EQ(std::count_if(records.begin(), records.end(),
                          [](const LogRecord& line) { return line.text.starts_with(L"Date:"); }),
            3);
}

TEST_F(ProcessingWorker, APassThatCouldNotSaveRaisesTheFlagToo) {
  LetTheCollectorStart();
  const std::wstring missing = folder.File(L"missing");
  helper->collectionPath = missing.c_str();
  helper->running = true;
  duringTheDay = [this] { helper->running = false; };
  helper->ProcessingCallback();
  EXPECT_TRUE(helper->IsDataAvailable());
}

TEST_F(ProcessingWorker, EndsWithoutAPassWhereItIsNoLongerRunningAfterTheDelay) {
  LetTheCollectorStart();
  helper->running = false;
  helper->ProcessingCallback();
  EXPECT_THAT(sleeps, ElementsAre(90000U));
  EXPECT_FALSE(helper->IsDataAvailable());
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(ProcessingWorker, TheHelpersEndWaitsForTheRunningSleep) {
  std::promise<void> release;
  untilReleased = &release;
  helper->StartProcessing();
  auto end = std::async(std::launch::async, [this] { helper.reset(); });
  EXPECT_EQ(end.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  release.set_value();
  end.wait();
  EXPECT_THAT(sleeps, ElementsAre(90000U));
}

TEST_F(ProcessingWorker, TheHelpersEndTellsTheWorkerToRunNoPass) {
  LetTheCollectorStart();
  std::promise<void> release;
  untilReleased = &release;
  // Only a worker that was not told comes here; it would go on for ever.
  bool slept = false;
  duringTheDay = [&slept, raw = helper.get()] {
    slept = true;
    raw->running = false;
  };
  helper->StartProcessing();
  auto end = std::async(std::launch::async, [this] { helper.reset(); });
  EXPECT_EQ(end.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  release.set_value();
  end.wait();
  EXPECT_FALSE(slept);
}

TEST_F(ProcessingWorker, ASecondStartGivesTheFirstThreadUpWithoutEndingTheProcess) {
  helper->StartProcessing();
  std::thread* first = helper->worker.get();
  helper->StartProcessing();
  EXPECT_NE(helper->worker.get(), first);
  // The first thread object has no owner any more; the test takes it so that nothing leaks.
  const std::unique_ptr<std::thread> given(first);
  given->join();
}

TEST_F(ProcessingWorker, BeforeTheFirstPassTheLedgerIsEmptyAndOnlyDataChangedIsSet) {
  std::promise<void> release;
  untilReleased = &release;
  helper->StartProcessing();
  EXPECT_TRUE(helper->dailyLedger.empty());
  EXPECT_FALSE(helper->IsDataAvailable());
  EXPECT_TRUE(helper->IsDataChanged());
  EXPECT_EQ(helper->GetDailyAveragePowerConsumption(), 0.0F);
  release.set_value();
  helper.reset();
}

namespace {

std::uintptr_t __cdecl NoThread(void*, unsigned, unsigned(__stdcall*)(void*), void*, unsigned,
                                unsigned*) {
  errno = EAGAIN;
  return 0;
}

}  // namespace

TEST_F(ProcessingWorker, AThreadThatCannotBeMadeIsRaisedToTheCaller) {
  const ImportPatch patch("_beginthreadex", &NoThread);
  EXPECT_THROW(helper->StartProcessing(), std::system_error);
  EXPECT_TRUE(helper->running);
  EXPECT_EQ(helper->worker, nullptr);
}
