#include <windows.h>

#include <wincrypt.h>

#include <atomic>
#include <chrono>
#include <future>
#include <thread>

#include <gtest/gtest.h>

#include "collection/ledger_fixture.h"

// Commands beside a running pass, which stands still in the middle of a decryption.

using namespace TestSupport;

namespace {

using Unprotect = decltype(CryptUnprotectData);

/// The first decryption says that it has begun and then waits until it may go on.
struct Gate {
  Unprotect* original = nullptr;
  std::atomic<bool> isFirst{true};
  std::promise<void> entered;
  std::promise<void> mayGoOn;
};

Gate* g_gate = nullptr;

BOOL WINAPI GatedUnprotect(DATA_BLOB* closed, LPWSTR* description, DATA_BLOB* entropy,
                           PVOID reserved, CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags,
                           DATA_BLOB* opened) {
  if (g_gate->isFirst.exchange(false)) {
    g_gate->entered.set_value();
    g_gate->mayGoOn.get_future().wait();
  }
  return g_gate->original(closed, description, entropy, reserved, prompt, flags, opened);
}

class BesideAPass : public LedgerFixture {
 protected:
  void SetUp() override {
    g_gate = &gate_;
    gate_.original = patch_.Original<Unprotect>();
    WriteOneInterval("2024-05-08");
    pass_ = std::async(std::launch::async, [this] { helper.CalculateDailyPowerConsumption(); });
    const auto entered = gate_.entered.get_future().wait_for(std::chrono::seconds(60));
    ASSERT_EQ(entered, std::future_status::ready) << "the pass decrypts nothing";
  }

  void TearDown() override {
    LetThePassEnd();
    pass_.wait();
  }

  void LetThePassEnd() {
    if (!isOpen_.exchange(true)) gate_.mayGoOn.set_value();
  }

  /// Starts a command on a thread of its own; returns once that thread is about to call it.
  template <typename Command>
  auto Ask(Command command) {
    std::promise<void> asking;
    auto hasBegun = asking.get_future();
    auto answer = std::async(std::launch::async, [begun = std::move(asking), command]() mutable {
      begun.set_value();
      return command();
    });
    hasBegun.wait();
    return answer;
  }

  template <typename Answer>
  static bool IsAnswered(const std::future<Answer>& answer) {
    return answer.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
  }

 private:
  Gate gate_;
  const Standin::ImportPatch patch_{"CryptUnprotectData", &GatedUnprotect};
  std::atomic<bool> isOpen_{false};
  std::future<void> pass_;
};

}  // namespace

TEST_F(BesideAPass, AverageAndSeriesWaitForTheEndOfThePass) {
  const auto average = [this] { return helper.GetDailyAveragePowerConsumption(); };
  const auto trees = [this] { return helper.GetTreeSavedCount(); };
  const auto hours = [this] {
    std::wstring result;
    helper.GetDailyPowerConsumption(result);
    return result;
  };
  const auto days = [this] {
    std::wstring result;
    helper.GetWeeklyPowerConsumption(result);
    return result;
  };
  const auto months = [this] {
    std::wstring result;
    helper.GetMonthlyPowerConsumption(result);
    return result;
  };
  auto averageAnswer = Ask(average);
  auto treesAnswer = Ask(trees);
  auto hoursAnswer = Ask(hours);
  auto daysAnswer = Ask(days);
  auto monthsAnswer = Ask(months);
  EXPECT_FALSE(IsAnswered(averageAnswer));
  EXPECT_FALSE(IsAnswered(treesAnswer));
  EXPECT_FALSE(IsAnswered(hoursAnswer));
  EXPECT_FALSE(IsAnswered(daysAnswer));
  EXPECT_FALSE(IsAnswered(monthsAnswer));

  LetThePassEnd();
  // Each answer shows what the pass had not booked yet when it was asked for.
  EXPECT_EQ(averageAnswer.get(), kThreeWh / 7.0F);
  EXPECT_GT(treesAnswer.get(), 0.0F);
  EXPECT_NE(hoursAnswer.get().find(L"{\"Time\":\"10:00\",\"Value\":3.409090995788574}"),
            std::wstring::npos);
  EXPECT_NE(monthsAnswer.get().find(L"{\"Month\":\"May\",\"Value\":3.409090995788574}"),
            std::wstring::npos);
  EXPECT_EQ(daysAnswer.get().substr(0, 18), L"{\"Range\":[0.0,0.0]");
}

TEST_F(BesideAPass, ThePassHoldsTheLockAcrossItsFileWork) {
  EXPECT_FALSE(std::unique_lock(helper.dataMutex, std::try_to_lock).owns_lock());
}

TEST_F(BesideAPass, FlagsAnswerAtOnce) {
  EXPECT_TRUE(helper.IsDataChanged());
  EXPECT_FALSE(helper.IsDataAvailable());
}
