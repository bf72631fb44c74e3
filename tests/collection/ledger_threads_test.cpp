#include <windows.h>

#include <wincrypt.h>

#include <atomic>
#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "collection/ledger_fixture.h"
#include "service/wattleaf_service.h"

// Commands beside a running pass, which stands still in the middle of a decryption.

using namespace TestSupport;
using Zq::Gantry::Server::Services::Wattleaf::WattleafHelper;
using Zq::Gantry::Server::Services::Wattleaf::WattleafService;

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
    WriteOneInterval("2024-05-07");
    pass_ = std::async(std::launch::async, [this] { RunPass(); });
    const auto entered = gate_.entered.get_future().wait_for(std::chrono::seconds(60));
    ASSERT_EQ(entered, std::future_status::ready) << "the pass decrypts nothing";
  }

  void TearDown() override {
    LetThePassEnd();
    pass_.wait();
  }

  virtual void RunPass() { helper.CalculateDailyPowerConsumption(); }

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

  /// Within a time in which every command that need not wait is through.
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

/// The pass is that of the one helper, which the service asks.
class CommandsBesideAPass : public BesideAPass {
 protected:
  CommandsBesideAPass() { WattleafHelper::Instance().*(&TestHelper::collectionPath) = path_; }

  void RunPass() override {
    constexpr auto kPass =
        static_cast<void (WattleafHelper::*)()>(&TestHelper::CalculateDailyPowerConsumption);
    (WattleafHelper::Instance().*kPass)();
  }

  /// The text of a command; "status" and its number where there is none.
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
  EXPECT_EQ(averageAnswer.get(), (kThreeWh + kThreeWh) / 7.0F);
  EXPECT_GT(treesAnswer.get(), 0.0F);
  EXPECT_NE(hoursAnswer.get().find(L"{\"Time\":\"10:00\",\"Value\":3.409090995788574}"),
            std::wstring::npos);
  EXPECT_NE(monthsAnswer.get().find(L"{\"Month\":\"May\",\"Value\":6.818181991577148}"),
            std::wstring::npos);
  EXPECT_NE(daysAnswer.get().find(L"{\"Day\":\"Tue\",\"Value\":3.409090995788574}"),
            std::wstring::npos);
}

TEST_F(BesideAPass, ThePassHoldsTheLockAcrossItsFileWork) {
  EXPECT_FALSE(std::unique_lock(helper.dataMutex, std::try_to_lock).owns_lock());
}

TEST_F(BesideAPass, FlagsAnswerAtOnce) {
  EXPECT_TRUE(helper.IsDataChanged());
  EXPECT_FALSE(helper.IsDataAvailable());
}

TEST_F(CommandsBesideAPass, OneAndThreeToSixWaitAndTwoAndTheFlagsDoNot) {
  std::vector<std::future<std::wstring>> waiting;
  for (const unsigned int command : {1U, 3U, 4U, 5U, 6U}) {
    waiting.push_back(Ask([command] { return Execute(command); }));
  }
  for (const auto& answer : waiting) EXPECT_FALSE(IsAnswered(answer));
  // On this thread, which the pass would hold up for good.
  Execute(2);
  EXPECT_EQ(Execute(8), L"true");
  EXPECT_EQ(Execute(10), L"false");

  LetThePassEnd();
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
