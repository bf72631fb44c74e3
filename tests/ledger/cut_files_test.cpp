// The ledger and a plain copy of samples, cut at each of their bytes, as a full disk or the end of
// the process leaves them. The whole pass over such files is in collection/cut_files_pass_test.cpp.

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/local_calendar.h"
#include "base/scratch_folder.h"
#include "ledger/fake_days.h"
#include "ledger/ledger_file.h"
#include "ledger/power_ledger.h"
#include "ledger/recent_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr char kToday[] = "2024-08-07";
constexpr int kWalkedDays = 211;
constexpr int kBookedDays = 35;
/// Days whose samples are still there: today and its neighbour, two days that no pass has booked,
/// and a booked one whose samples stayed.
constexpr int kDaysWithSamples[] = {0, 1, 2, 5, 33};

constexpr char kWhOf300SecondsText[] = "3.409090995788574";  // 3 / 0.88 in 32 bits

std::string DateBack(int back) {
  return DateOf(ShiftKeepingHour(Day(kToday), -back * kSecondsPerDay));
}

bool HasSamples(int back) {
  for (const int day : kDaysWithSamples) {
    if (day == back) return true;
  }
  return false;
}

/// 55.25, 55.5, ...: no two days are equal.
std::string BookedText(int back) {
  char text[16];
  std::snprintf(text, sizeof(text), "%.2f", 50 + 0.25 * back);
  std::string digits = text;
  while (digits.back() == '0' && digits[digits.size() - 2] != '.') digits.pop_back();
  return digits;
}

/// A ledger file of `days` days; `valueOf` returns the text of a day's energy.
template <typename ValueOf>
std::string LedgerText(int oldest, int newest, ValueOf valueOf) {
  std::vector<std::string> elements;
  for (int back = oldest; back >= newest; --back) {
    elements.push_back(R"({"Key":")" + DateBack(back) + R"(","Value":)" + valueOf(back) + "}");
  }
  return List(elements);
}

/// The file before the pass: days 6 to 40 are booked.
std::string OldLedger() {
  return LedgerText(5 + kBookedDays, 6, [](int back) { return BookedText(back); });
}

/// The file after a pass that could read the old one.
std::string LedgerOfAllDays() {
  return LedgerText(kWalkedDays - 1, 0, [](int back) -> std::string {
    if (back >= 6 && back <= 5 + kBookedDays) return BookedText(back);
    return HasSamples(back) ? kWhOf300SecondsText : "0.0";
  });
}

/// The file after a pass that could not.
std::string LedgerOfSamples() {
  return LedgerText(kWalkedDays - 1, 0, [](int back) -> std::string {
    return HasSamples(back) ? kWhOf300SecondsText : "0.0";
  });
}

/// The files of a process that has not made a pass yet.
class CutLedger : public testing::Test {
 protected:
  CutLedger() {
    for (const int back : kDaysWithSamples) {
      const std::string date = DateBack(back);
      samples_[date] = List(
          {Sample(date + "T09:00:00"), Sample(date + "T10:00:00"), Sample(date + "T10:05:00")});
    }
    const auto read = [this](const DateTime& day, JsonRowSink& sink) {
      const auto found = samples_.find(DateOf(day));
      return found != samples_.end() && PassSamples(found->second, sink);
    };
    for (const auto& [date, text] : samples_) {
      summaries_[InstantOf(Day(date))] = Summarized(read)(Day(date));
    }
  }

  void Write(const std::string& bytes) const { WriteBytes(folder_.File("ledger.json"), bytes); }

  /// The steps of a pass between the ledger's two files, with the pass's own functions. Returns the
  /// days whose samples it may delete.
  std::vector<std::string> RunPass(PowerLedger& ledger) const {
    const std::wstring path = folder_.File("ledger.json").wstring();
    const DateTime today = Day(kToday);
    std::vector<std::string> discarded;
    LoadLedger(path, OldestDay(today), ledger);
    UpdateLedger(today, ledger,
                 {[this](const DateTime& day) { return DayEnergyWh(day, SummaryOf()); },
                  [&](const DateTime& day) { discarded.push_back(DateOf(day)); }});
    EXPECT_TRUE(SaveLedger(path, ledger));
    EXPECT_TRUE(HoldsLedger(path, ledger));
    return discarded;
  }

  std::vector<std::string> RunFirstPass() const {
    PowerLedger ledger;
    return RunPass(ledger);
  }

  std::string Text() const { return ReadBytes(folder_.File("ledger.json")); }
  std::wstring Path() const { return folder_.File("ledger.json").wstring(); }

 private:
  DaySummaryReader SummaryOf() const {
    return [this](const DateTime& day) -> std::shared_ptr<const DaySummary> {
      const auto found = summaries_.find(InstantOf(day));
      return found != summaries_.end() ? found->second : nullptr;
    };
  }

  const ScratchFolder folder_;
  std::map<std::string, std::string> samples_;
  std::map<std::int64_t, std::shared_ptr<const DaySummary>> summaries_;
};

using Dates = std::vector<std::string>;

}  // namespace

TEST_F(CutLedger, WithAllItsBytesKeepsTheBookedDays) {
  Write(OldLedger());
  EXPECT_EQ(RunFirstPass(), (Dates{DateBack(2), DateBack(5)}));
  EXPECT_EQ(Text(), LedgerOfAllDays());
}

TEST_F(CutLedger, IsReplacedByTheDaysThatStillHaveSamplesAtEachLength) {
  const std::string whole = OldLedger();
  const std::string expected = LedgerOfSamples();
  const Dates discarded{DateBack(2), DateBack(5), DateBack(33)};
  for (std::size_t length = 0; length < whole.size(); ++length) {
    Write(whole.substr(0, length));
    ASSERT_EQ(RunFirstPass(), discarded) << length;
    ASSERT_EQ(Text(), expected) << length;
  }
  std::printf("figures: ledger cut at %zu lengths: a new ledger of the samples; whole: kept\n",
              whole.size());
}

TEST_F(CutLedger, FollowedByZerosHasNoDaysAtEachLength) {
  const std::string whole = OldLedger();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    Write(whole.substr(0, length) + std::string(whole.size() - length, '\0'));
    PowerLedger ledger;
    LoadLedger(Path(), OldestDay(Day(kToday)), ledger);
    ASSERT_TRUE(ledger.empty()) << length;
  }
  std::printf("figures: ledger with zeros from %zu places on: no day is read\n", whole.size());
}

TEST_F(CutLedger, LosesNothingAtAnyLengthWhileTheProcessLives) {
  PowerLedger ledger;
  const std::string whole = OldLedger();
  Write(whole);
  RunPass(ledger);
  const std::string expected = LedgerOfAllDays();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    Write(whole.substr(0, length));
    ASSERT_EQ(RunPass(ledger), Dates{}) << length;
    ASSERT_EQ(Text(), expected) << length;
  }
  std::printf("figures: ledger cut at %zu lengths in a running process: nothing is lost\n",
              whole.size());
}

// A pass that reads such a file back keeps the samples of the days that it has just booked.
TEST_F(CutLedger, IsNotTakenForTheSavedOneAtAnyLength) {
  const std::string whole = OldLedger();
  Write(whole);
  PowerLedger ledger;
  LoadLedger(Path(), OldestDay(Day(kToday)), ledger);
  for (std::size_t length = 0; length < whole.size(); ++length) {
    Write(whole.substr(0, length));
    ASSERT_FALSE(HoldsLedger(Path(), ledger)) << length;
  }
  Write(whole);
  EXPECT_TRUE(HoldsLedger(Path(), ledger));
  std::printf("figures: ledger cut at %zu lengths while it is saved: the samples stay\n",
              whole.size());
}

TEST(CutPlainCopy, CountsFromTheLastByteOfItsTextOn) {
  const ScratchFolder folder;
  const std::string text = List({Sample("2024-08-02T09:00:00"), Sample("2024-08-02T10:00:00"),
                                 Sample("2024-08-02T10:05:00")});
  const std::string copy = text + std::string(text.size(), '\0');
  const DateTime day = Day("2024-08-02");
  std::size_t counted = 0;
  for (std::size_t length = 0; length <= copy.size(); ++length) {
    WriteBytes(folder.File("copy.json"), copy.substr(0, length));
    RecentDays days;
    const float energyWh = DayEnergyWh(day, [&](const DateTime& wanted) {
      const bool isDay = DateOf(wanted) == "2024-08-02";
      return isDay ? days.Read(folder.File("copy.json").wstring()) : nullptr;
    });
    ASSERT_EQ(energyWh, length < text.size() ? 0.0F : kWhOf300Seconds) << length;
    if (energyWh != 0.0F) ++counted;
  }
  EXPECT_EQ(counted, text.size() + 1);
  std::printf("figures: plain copy cut at %zu lengths: %zu count as no samples, %zu as the day\n",
              copy.size() + 1, text.size(), counted);
}
