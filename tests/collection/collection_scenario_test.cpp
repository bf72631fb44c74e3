// Worker, collector, several passes, shutdown and restart together, in one record of calls, log
// lines and waits.

#include <windows.h>

#include <roapi.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <future>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "catalogue/fake_packages.h"
#include "collection/fake_collector_library.h"
#include "collection/fake_tool.h"
#include "collection/ledger_fixture.h"
#include "collection/open_helper.h"
#include "import_patch.h"
#include "ledger/encrypted_samples.h"
#include "ledger/fake_days.h"
#include "support/call_record.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

namespace {

/// Blocks the worker in its sleep of a day until the test opens the gate once.
class DayGate {
 public:
  void Pass() {
    std::unique_lock guard(lock_);
    changed_.wait(guard, [this] { return open_ > 0; });
    --open_;
  }
  void OpenOnce() {
    const std::lock_guard guard(lock_);
    ++open_;
    changed_.notify_all();
  }

 private:
  std::mutex lock_;
  std::condition_variable changed_;
  int open_ = 0;
};

class WattleafHelperScenario : public testing::Test {
 protected:
  WattleafHelperScenario() {
    current = this;
    library.script.record = &record;
    tool.DuringRun([this] {
      record.Add(std::string("run tool, data available: ") +
                 (helper->IsDataAvailable() ? "true" : "false"));
    });
    for (const char* date : {"2024-05-06", "2024-05-07", "2024-05-08"}) WriteSamples(date);
    FakeClock::Set("2024-05-08 14:30:00");
  }
  ~WattleafHelperScenario() override { current = nullptr; }

  /// As in a new host process: a new helper and its worker.
  void Start() {
    helper = std::make_unique<OpenHelper>();
    helper->PlatformSupportState = 1;
    helper->hostDirectory = host.Path();
    helper->collectionPath = data.Path().c_str();
    helper->StartProcessing();
  }

  /// Waits until `count` passes are recorded and the worker sleeps.
  void AwaitPass(int count) { ASSERT_TRUE(record.WaitFor("wait 86400000", count)); }

  void WakeAt(const std::string& now) {
    FakeClock::Set(now);
    gate.OpenOnce();
  }

  /// Destroys the helper while its worker sleeps.
  void Destroy() {
    const OpenHelper& destroyed = *helper;
    auto end = std::async(std::launch::async, [this] { helper.reset(); });
    while (destroyed.running) std::this_thread::yield();
    EXPECT_EQ(end.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    gate.OpenOnce();
    end.wait();
  }

  /// The record without the log lines of the trust checks and of single files.
  std::vector<std::string> MainLines() const {
    return record.LinesOf({"wait", "awake", "read", "library", "collector", "run",
                           "log info: Date:", "log info: Loaded", "log info: DataCollector",
                           "log error: DataCollector", "log error: Exception", "log warning"});
  }

  const TempFolder data;
  const ProtectedFolder host{L"signed.dll"};
  const FakeClock clock;
  CallRecord record;
  LogCapture log{record};
  FakeCollectorLibrary library;
  FakePackages packages;
  FakeTool tool;
  DayGate gate;
  std::unique_ptr<OpenHelper> helper;

 private:
  void WriteSamples(const std::string& date) const {
    const std::string json =
        List({Sample(date + "T09:00:00"), Sample(date + "T10:00:00"), Sample(date + "T10:05:00")});
    WriteWholeFile(data.File(L"PcmSampleData_" + std::wstring(date.begin(), date.end()) + L".json"),
                   Encrypted(Utf16(json)));
  }

  static void WINAPI RecordedSleep(DWORD milliseconds) {
    if (milliseconds == 0) return;  // winpthread yields with Sleep(0)
    current->record.Add("wait " + std::to_string(milliseconds));
    if (milliseconds == 86400000) {
      current->gate.Pass();
      current->record.Add("awake");
    }
  }

  /// Adds one line for all keys of the catalogue.
  static LSTATUS WINAPI RecordedOpenKey(HKEY root, const wchar_t* path, DWORD options,
                                        REGSAM access, HKEY* key) {
    const std::string line = "read desktop programs";
    if (current->record.Lines().back() != line) current->record.Add(line);
    return current->openKey_.Original<LSTATUS WINAPI(HKEY, const wchar_t*, DWORD, REGSAM, HKEY*)>()(
        root, path, options, access, key);
  }

  static HRESULT WINAPI RecordedActivate(HSTRING name, IInspectable** object) {
    current->record.Add("read packages");
    return current->activate_.Original<HRESULT WINAPI(HSTRING, IInspectable**)>()(name, object);
  }

  static inline WattleafHelperScenario* current = nullptr;
  ImportPatch sleep_{"Sleep", &RecordedSleep};
  ImportPatch openKey_{"RegOpenKeyExW", &RecordedOpenKey};
  ImportPatch activate_{"RoActivateInstance", &RecordedActivate};
};

const std::vector<std::string> kStartLines = {
    "wait 90000",
    "library load",
    "collector create",
    "log info: Loaded DataCollector library\n",
    "collector load",
    "collector callback",
    "collector start",
    "log info: DataCollector StartCollecting() success\n ",
    "read desktop programs",
    "read packages",
};

/// The lines of a pass and of the wait after it.
std::vector<std::string> Pass(const std::string& date) {
  return {"log info: Date:" + date, "run tool, data available: true", "wait 86400000"};
}

std::vector<std::string> Joined(const std::vector<std::vector<std::string>>& parts) {
  std::vector<std::string> all;
  for (const auto& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

}  // namespace

TEST_F(WattleafHelperScenario, RunsThreeDailyPassesThenStopsTheCollector) {
  Start();
  AwaitPass(1);
  WakeAt("2024-05-09 14:31:00");
  AwaitPass(2);
  WakeAt("2024-05-10 14:32:00");
  AwaitPass(3);
  Destroy();
  EXPECT_THAT(MainLines(), ElementsAreArray(Joined({kStartLines,
                                                    Pass("2024-05-08"),
                                                    {"awake"},
                                                    Pass("2024-05-09"),
                                                    {"awake"},
                                                    Pass("2024-05-10"),
                                                    {"awake", "collector stop", "collector destroy",
                                                     "collector free"}})));
}

TEST_F(WattleafHelperScenario, StartsFromDefaultsAfterARestartAndReadsTheSavedLedger) {
  const float threeDays = (kThreeWh + kThreeWh + kThreeWh) / 7.0F;
  Start();
  AwaitPass(1);
  EXPECT_FLOAT_EQ(helper->GetDailyAveragePowerConsumption(), threeDays);
  WakeAt("2024-05-09 14:31:00");
  AwaitPass(2);
  Destroy();
  EXPECT_FALSE(FileExists(data.File(L"PcmSampleData_2024-05-06.json"))) << "its energy is booked";

  record.Clear();
  library.script.onCall = [this](const std::string& call) {
    if (call != "create") return;
    EXPECT_FALSE(helper->IsDataAvailable());
    EXPECT_TRUE(helper->IsDataChanged());
    EXPECT_EQ(helper->GetDailyAveragePowerConsumption(), 0.0F);
  };
  FakeClock::Set("2024-05-09 18:00:00");
  Start();
  AwaitPass(1);
  EXPECT_FLOAT_EQ(helper->GetDailyAveragePowerConsumption(), threeDays);
  EXPECT_THAT(MainLines(), ElementsAreArray(Joined({kStartLines, Pass("2024-05-09")})));
  Destroy();
}

TEST_F(WattleafHelperScenario, EndsTheWorkerWhenTheCollectorRefusesAndStopsItInTheDestructor) {
  library.script.status = {{0, 0}};
  Start();
  helper->worker->join();
  EXPECT_EQ(helper->IsPlatformSupported(), 0);
  EXPECT_FALSE(helper->IsDataAvailable());
  helper.reset();
  EXPECT_THAT(MainLines(),
              ElementsAre("wait 90000", "library load", "collector create",
                          "log info: Loaded DataCollector library\n", "collector load",
                          "collector callback", "collector start",
                          "log error: DataCollector StartCollecting() failed. Device not "
                          "supported.\n",
                          "collector stop", "collector destroy", "collector free"));
  EXPECT_THAT(tool.Calls(), IsEmpty());
}

TEST_F(WattleafHelperScenario, UnloadsACollectorThatCannotLoadAndDoesNotStopIt) {
  library.script.loads = false;
  Start();
  helper->worker->join();
  record.Add("end");
  helper.reset();
  EXPECT_THAT(record.Lines().back(), "end");
  EXPECT_THAT(library.script.calls, ElementsAre("create", "load", "destroy", "free"));
  EXPECT_THAT(tool.Calls(), IsEmpty());
}

TEST_F(WattleafHelperScenario, DestroysAndFreesACollectorThatThrowsWhenStopped) {
  Start();
  AwaitPass(1);
  library.script.onCall = [](const std::string& call) {
    if (call == "stop") throw 5;
  };
  Destroy();
  const std::vector<std::string> lines = MainLines();
  ASSERT_GT(lines.size(), 4U);
  EXPECT_THAT(std::vector<std::string>(lines.end() - 4, lines.end()),
              ElementsAre("awake", "collector stop", "collector destroy", "collector free"));
}
