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
std::function<void()> duringDaySleep;
std::vector<int> priorities;

void WINAPI FakeSleep(DWORD milliseconds) {
  if (milliseconds == 0) return;  // winpthread yields with Sleep(0)
  sleeps.push_back(milliseconds);
  if (milliseconds == 86400000) {
    if (duringDaySleep) duringDaySleep();
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

class WorkerFixture : public testing::Test {
 protected:
  WorkerFixture() {
    sleeps.clear();
    untilReleased = nullptr;
    duringDaySleep = nullptr;
    priorities.clear();
    // Without support the collector does not start, and the worker ends after its delay.
    helper->PlatformSupportState = 0;
  }

  /// StartCollection succeeds, since the collector counts as started; the data folder is empty.
  void LetTheCollectorStart() {
    helper->PlatformSupportState = 1;
    helper->collectionStarted = true;
    helper->collectionPath = folder.Path().c_str();
  }

  const TempFolder folder;
  LogCapture log;
  const FakeTool tool;
  FakePackages packages;  // none installed
  ImportPatch patchedSleep{"Sleep", &FakeSleep};
  std::unique_ptr<OpenHelper> helper = std::make_unique<OpenHelper>();
};

using StartProcessing = WorkerFixture;
using ProcessingCallback = WorkerFixture;

}  // namespace

TEST_F(StartProcessing, RunsAtTheLowestPriorityAndIgnoresAFailureToSetIt) {
  const ImportPatch patch("SetThreadPriority", &FakePriority);
  helper->StartProcessing();
  EXPECT_TRUE(helper->running);
  ASSERT_NE(helper->worker, nullptr);
  helper.reset();
  // winpthread also sets the priority itself while it creates the thread.
  ASSERT_FALSE(priorities.empty());
  EXPECT_EQ(priorities.back(), -2);
  EXPECT_EQ(std::count(priorities.begin(), priorities.end(), -2), 1);
}

TEST_F(StartProcessing, EndsAfterTheDelayWhenTheCollectorDoesNotStart) {
  helper->StartProcessing();
  helper->worker->join();
  EXPECT_THAT(sleeps, ElementsAre(90000U));
  EXPECT_THAT(log.Records(), IsEmpty()) << "no pass has run";
  EXPECT_TRUE(helper->dailyLedger.empty());
  EXPECT_NE(helper->worker, nullptr) << "the thread object stays";
}

TEST_F(ProcessingCallback, UpdatesTheLedgerSetsDataAvailableAndSleepsForADay) {
  LetTheCollectorStart();
  helper->running = true;
  duringDaySleep = [this] {
    EXPECT_EQ(helper->dailyLedger.size(), 211U);
    EXPECT_TRUE(FileExists(folder.File(L"PowerConsumption.json")));
    EXPECT_TRUE(helper->IsDataAvailable());
    helper->running = false;
  };
  helper->ProcessingCallback();
  EXPECT_THAT(sleeps, ElementsAre(90000U, 86400000U));
}

TEST_F(ProcessingCallback, RunsOnePassPerDayWhileRunning) {
  LetTheCollectorStart();
  helper->running = true;
  duringDaySleep = [this] { helper->running = sleeps.size() < 4; };
  helper->ProcessingCallback();
  EXPECT_THAT(sleeps, ElementsAre(90000U, 86400000U, 86400000U, 86400000U));
  const std::vector<LogRecord> records = log.Records();
  EXPECT_EQ(std::count_if(records.begin(), records.end(),
                          [](const LogRecord& line) { return line.text.starts_with(L"Date:"); }),
            3);
}

TEST_F(ProcessingCallback, SetsDataAvailableWhenThePassCannotSave) {
  LetTheCollectorStart();
  const std::wstring missing = folder.File(L"missing");
  helper->collectionPath = missing.c_str();
  helper->running = true;
  duringDaySleep = [this] { helper->running = false; };
  helper->ProcessingCallback();
  EXPECT_TRUE(helper->IsDataAvailable());
}

TEST_F(ProcessingCallback, RunsNoPassWhenRunningIsFalseAfterTheDelay) {
  LetTheCollectorStart();
  helper->running = false;
  helper->ProcessingCallback();
  EXPECT_THAT(sleeps, ElementsAre(90000U));
  EXPECT_FALSE(helper->IsDataAvailable());
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST_F(StartProcessing, MakesTheDestructorWaitForTheCurrentSleep) {
  std::promise<void> release;
  untilReleased = &release;
  helper->StartProcessing();
  auto end = std::async(std::launch::async, [this] { helper.reset(); });
  EXPECT_EQ(end.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
  release.set_value();
  end.wait();
  EXPECT_THAT(sleeps, ElementsAre(90000U));
}

TEST_F(StartProcessing, RunsNoPassAfterTheDestructorHasBegun) {
  LetTheCollectorStart();
  std::promise<void> release;
  untilReleased = &release;
  // Reached only by a worker that misses `running`; without this line it would never end.
  bool slept = false;
  duringDaySleep = [&slept, raw = helper.get()] {
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

TEST_F(StartProcessing, AbandonsTheFirstThreadOnASecondCall) {
  helper->StartProcessing();
  std::thread* first = helper->worker.get();
  helper->StartProcessing();
  EXPECT_NE(helper->worker.get(), first);
  // The product has abandoned the first thread object; the test owns it so that nothing leaks.
  const std::unique_ptr<std::thread> abandoned(first);
  abandoned->join();
}

TEST_F(StartProcessing, LeavesTheLedgerEmptyAndDataUnavailableBeforeTheFirstPass) {
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

TEST_F(StartProcessing, ThrowsSystemErrorWhenTheThreadCannotBeCreated) {
  const ImportPatch patch("_beginthreadex", &NoThread);
  EXPECT_THROW(helper->StartProcessing(), std::system_error);
  EXPECT_TRUE(helper->running);
  EXPECT_EQ(helper->worker, nullptr);
}
