#include "collection/worker_plan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// Records the steps; MayContinue is true `passes` times.
class RecordedSteps final : public WorkerSteps {
 public:
  RecordedSteps(bool starts, int passes) : starts_(starts), passes_(passes) {}

  void Wait(std::chrono::milliseconds length) override {
    log.push_back("wait " + std::to_string(length.count()));
  }
  bool StartCollector() override {
    log.push_back("start");
    return starts_;
  }
  void LoadDesktopCatalogue() override { log.push_back("desktop"); }
  void LoadPackagedCatalogue() override { log.push_back("packaged"); }
  bool MayContinue() override { return passes_-- > 0; }
  void UpdateLedger() override { log.push_back("ledger"); }
  void UpdateRanking() override { log.push_back("ranking"); }
  void MarkDataAvailable() override { log.push_back("available"); }

  std::vector<std::string> log;

 private:
  bool starts_;
  int passes_;
};

}  // namespace

TEST(RunWorker, WaitsNinetySecondsBeforeAnythingElse) {
  RecordedSteps steps(/*starts=*/false, 0);
  RunWorker(steps);
  ASSERT_FALSE(steps.log.empty());
  EXPECT_EQ(steps.log.front(), "wait 90000");
}

TEST(RunWorker, EndsAtOnceWhenTheCollectorDoesNotStart) {
  RecordedSteps steps(/*starts=*/false, 3);
  RunWorker(steps);
  EXPECT_EQ(steps.log, (std::vector<std::string>{"wait 90000", "start"}));
}

TEST(RunWorker, LoadsTheCataloguesButRunsNoPassWhenItMayNotContinue) {
  RecordedSteps steps(/*starts=*/true, 0);
  RunWorker(steps);
  EXPECT_EQ(steps.log, (std::vector<std::string>{"wait 90000", "start", "desktop", "packaged"}));
}

TEST(RunWorker, RunsLedgerRankingFlagAndSleepInEachPass) {
  RecordedSteps steps(/*starts=*/true, 1);
  RunWorker(steps);
  EXPECT_EQ(steps.log,
            (std::vector<std::string>{"wait 90000", "start", "desktop", "packaged", "ledger",
                                      "ranking", "available", "wait 86400000"}));
}

TEST(RunWorker, LoadsTheCataloguesOnlyOnce) {
  RecordedSteps steps(/*starts=*/true, 3);
  RunWorker(steps);
  EXPECT_EQ(std::count(steps.log.begin(), steps.log.end(), "desktop"), 1);
  EXPECT_EQ(std::count(steps.log.begin(), steps.log.end(), "packaged"), 1);
  EXPECT_EQ(std::count(steps.log.begin(), steps.log.end(), "ledger"), 3);
}
