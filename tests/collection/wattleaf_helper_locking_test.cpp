// Operations and commands during a daily pass that is held in the middle of a decryption.

#include <windows.h>

#include <wincrypt.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "collection/ledger_fixture.h"
#include "service/wattleaf_service.h"

using namespace TestSupport;
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;
using Zq::Gantry::Server::Services::Wattleaf::WattleafService;

namespace {

using Unprotect = decltype(CryptUnprotectData);

/// Reports the begin of the first decryption, and blocks it until `mayContinue` is set.
struct Gate {
  Unprotect* original = nullptr;
  std::atomic<bool> isFirst{true};
  std::promise<void> entered;
  std::promise<void> mayContinue;
};

Gate* g_gate = nullptr;

BOOL WINAPI GatedUnprotect(DATA_BLOB* closed, LPWSTR* description, DATA_BLOB* entropy,
                           PVOID reserved, CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags,
                           DATA_BLOB* opened) {
  if (g_gate->isFirst.exchange(false)) {
    g_gate->entered.set_value();
    g_gate->mayContinue.get_future().wait();
  }
  return g_gate->original(closed, description, entropy, reserved, prompt, flags, opened);
}

class WattleafHelperLocking : public LedgerFixture {
 protected:
  void SetUp() override {
    g_gate = &gate_;
    gate_.original = patch_.Original<Unprotect>();
    WriteOneInterval("2024-05-08");
    WriteOneInterval("2024-05-07");
    pass_ = std::async(std::launch::async, [this] { RunPass(); });
    const auto entered = gate_.entered.get_future().wait_for(std::chrono::seconds(60));
    ASSERT_EQ(entered, std::future_status::ready) << "the pass has not reached a decryption";
  }

  void TearDown() override {
    FinishPass();
    pass_.wait();
  }

  virtual void RunPass() { helper.CalculateDailyPowerConsumption(); }

  /// Lets the pass continue to its end.
  void FinishPass() {
    if (!isOpen_.exchange(true)) gate_.mayContinue.set_value();
  }

  /// Runs `command` on another thread; returns when that thread is about to call it.
  template <typename Command>
  auto Start(Command command) {
    std::promise<void> starting;
    auto hasBegun = starting.get_future();
    auto answer = std::async(std::launch::async, [begun = std::move(starting), command]() mutable {
      begun.set_value();
      return command();
    });
    hasBegun.wait();
    return answer;
  }

  /// Whether the answer arrives within 50 ms, which suffices for a command that takes no lock.
  template <typename Answer>
  static bool IsAnswered(const std::future<Answer>& answer) {
    return answer.wait_for(std::chrono::milliseconds(50)) == std::future_status::ready;
  }

 private:
  Gate gate_;
  const Standin::ImportPatch patch_{"CryptUnprotectData", &GatedUnprotect};
  std::atomic<bool> isOpen_{false};
  std::future<void> pass_;
};

/// The pass runs in the singleton, which answers the commands.
class ExecuteCommandLocking : public WattleafHelperLocking {
 protected:
  ExecuteCommandLocking() { WattleafHelper::Instance().*(&TestHelper::collectionPath) = path_; }

  void RunPass() override {
    constexpr auto kPass =
        static_cast<void (WattleafHelper::*)()>(&TestHelper::CalculateDailyPowerConsumption);
    (WattleafHelper::Instance().*kPass)();
  }

  /// The text of a command; "status" and its number if it fails.
  static std::wstring Execute(unsigned int command) {
    WattleafService service;
    wchar_t input[] = L"";
    wchar_t* output = nullptr;
    const int status = service.ExecuteCommand(nullptr, command, input, &output, {}, nullptr);
    const std::wstring text = status == 0 ? output : L"status " + std::to_wstring(status);
    service.FreeResult(output);
    return text;
  }

 private:
  const wchar_t* const path_ = folder.Path().c_str();
};

}  // namespace

TEST_F(WattleafHelperLocking, MakesTheAverageAndTheSeriesWaitForADailyPass) {
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
  auto averageAnswer = Start(average);
  auto treesAnswer = Start(trees);
  auto hoursAnswer = Start(hours);
  auto daysAnswer = Start(days);
  auto monthsAnswer = Start(months);
  EXPECT_FALSE(IsAnswered(averageAnswer));
  EXPECT_FALSE(IsAnswered(treesAnswer));
  EXPECT_FALSE(IsAnswered(hoursAnswer));
  EXPECT_FALSE(IsAnswered(daysAnswer));
  EXPECT_FALSE(IsAnswered(monthsAnswer));

  FinishPass();
  // Each answer contains energy that the pass had not booked when the operation started.
  EXPECT_EQ(averageAnswer.get(), (kThreeWh + kThreeWh) / 7.0F);
  EXPECT_GT(treesAnswer.get(), 0.0F);
  EXPECT_NE(hoursAnswer.get().find(L"{\"Time\":\"10:00\",\"Value\":3.409090995788574}"),
            std::wstring::npos);
  EXPECT_NE(monthsAnswer.get().find(L"{\"Month\":\"May\",\"Value\":6.818181991577148}"),
            std::wstring::npos);
  EXPECT_NE(daysAnswer.get().find(L"{\"Day\":\"Tue\",\"Value\":3.409090995788574}"),
            std::wstring::npos);
}

TEST_F(WattleafHelperLocking, HoldsTheLockDuringTheFileWorkOfADailyPass) {
  EXPECT_FALSE(std::unique_lock(helper.dataMutex, std::try_to_lock).owns_lock());
}

TEST_F(WattleafHelperLocking, AnswersTheFlagsDuringADailyPass) {
  EXPECT_TRUE(helper.IsDataChanged());
  EXPECT_FALSE(helper.IsDataAvailable());
}

TEST_F(ExecuteCommandLocking, MakesOnlyCommands1And3To6WaitForADailyPass) {
  std::vector<std::future<std::wstring>> waiting;
  for (const unsigned int command : {1U, 3U, 4U, 5U, 6U}) {
    waiting.push_back(Start([command] { return Execute(command); }));
  }
  for (const auto& answer : waiting) EXPECT_FALSE(IsAnswered(answer));
  // On this thread: if one of these waited for the pass, the test would hang.
  Execute(2);
  EXPECT_EQ(Execute(8), L"true");
  EXPECT_EQ(Execute(10), L"false");

  FinishPass();
  // (3.0 / 0.88 + 3.0 / 0.88) / 7 = 0.974026; times 365 * 3 / 1000 / 300 = 0.003555.
  EXPECT_EQ(waiting[0].get(), L"0.974026");
  EXPECT_EQ(waiting[1].get(), L"0.003555");
  EXPECT_NE(waiting[2].get().find(L"{\"Time\":\"10:00\",\"Value\":3.409090995788574}"),
            std::wstring::npos);
  EXPECT_NE(waiting[3].get().find(L"{\"Day\":\"Tue\",\"Value\":3.409090995788574}"),
            std::wstring::npos);
  EXPECT_NE(waiting[4].get().find(L"{\"Month\":\"May\",\"Value\":6.818181991577148}"),
            std::wstring::npos);
}
