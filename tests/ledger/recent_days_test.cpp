#include "ledger/recent_days.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "base/scratch_folder.h"
#include "ledger/fake_days.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

using Summary = std::shared_ptr<const DaySummary>;

/// A folder of samples by the day of a month, and what reading them returned.
class RecentDaysTest : public testing::Test {
 protected:
  static std::string DateOfDay(int day) { return "2024-05-" + std::to_string(day); }

  std::filesystem::path PathOf(int day) const { return folder_.File(DateOfDay(day) + ".json"); }

  /// One sample of that power, and blanks up to a length.
  void Write(int day, int watts, std::size_t bytes = 0) const {
    std::string text = List({Sample(DateOfDay(day) + "T10:00:00", std::to_string(watts))});
    if (text.size() < bytes) text.append(bytes - text.size(), ' ');
    WriteBytes(PathOf(day), text);
  }

  Summary Read(int day) { return recent_.Read(PathOf(day).wstring()); }

  /// Whether reading the day again returns `summary` itself.
  bool IsKept(int day, const Summary& summary) { return Read(day) == summary; }

 private:
  const ScratchFolder folder_{};
  RecentDays recent_;
};

constexpr std::size_t kLong = 4'194'305;

}  // namespace

TEST_F(RecentDaysTest, HasTheSamplesOfTheFile) {
  WriteBytes(PathOf(10),
             List({Sample("2024-05-10T10:00:00", "1", "OTHER"), Sample("2024-05-10T10:05:00", "36"),
                   Sample("2024-05-10T10:10:00", "72"), Sample("2024-05-10T10:20:00", "5", "OTHER"),
                   Sample("2024-05-10T10:20:30", "7", "OTHER")}));
  const Summary summary = Read(10);
  ASSERT_NE(summary, nullptr);
  EXPECT_EQ(summary->count, 5U);
  EXPECT_FALSE(summary->first.isCounted);
  EXPECT_EQ(summary->first.watts, 1.0F);
  EXPECT_FALSE(summary->last.isCounted);
  EXPECT_EQ(summary->last.watts, 7.0F);
  ASSERT_TRUE(summary->first.time && summary->last.time);
  EXPECT_EQ(summary->last.time->instant - summary->first.time->instant, 20 * 60 + 30);
  EXPECT_EQ(summary->intervalsWh, (std::vector<float>{3.0F, 12.0F}));
}

TEST_F(RecentDaysTest, HasTheTimeOfACountedLastSampleAfterAnotherType) {
  WriteBytes(PathOf(10),
             List({Sample("2024-05-10T10:00:00"), Sample("2024-05-10T10:05:00", "1", "OTHER"),
                   Sample("2024-05-10T10:10:00", "1", "OTHER"), Sample("2024-05-10T10:20:00")}));
  const Summary summary = Read(10);
  ASSERT_TRUE(summary && summary->first.time && summary->last.time);
  EXPECT_EQ(summary->last.time->instant - summary->first.time->instant, 20 * 60);
}

TEST_F(RecentDaysTest, IsNullWithoutAListThatParses) {
  EXPECT_EQ(Read(10), nullptr) << "a missing file";
  for (const char* text : {"", "{}", "[", "[1", "[]]"}) {
    WriteBytes(PathOf(10), text);
    EXPECT_EQ(Read(10), nullptr) << text;
    EXPECT_EQ(Read(10), nullptr) << text << " again";
  }
  Write(10, 1);
  EXPECT_NE(Read(10), nullptr);
}

TEST_F(RecentDaysTest, ReadsAFileAgainThatHasChanged) {
  Write(10, 1);
  const Summary one = Read(10);
  EXPECT_TRUE(IsKept(10, one));
  Write(10, 2);
  const Summary two = Read(10);
  ASSERT_NE(two, nullptr);
  EXPECT_EQ(two->first.watts, 2.0F);
  Write(10, 1);
  EXPECT_TRUE(IsKept(10, one));
}

TEST_F(RecentDaysTest, IgnoresWhatFollowsAZeroByte) {
  Write(10, 1);
  const Summary one = Read(10);
  WriteBytes(PathOf(10), ReadBytes(PathOf(10)) + std::string("\0]]", 3));
  EXPECT_TRUE(IsKept(10, one));
}

TEST_F(RecentDaysTest, KeepsTheThreeEarliestDays) {
  for (int day = 10; day < 16; ++day) Write(day, day);
  const Summary three = Read(13);
  const Summary five = Read(15);
  const Summary two = Read(12);
  EXPECT_TRUE(IsKept(13, three));
  EXPECT_TRUE(IsKept(15, five));
  EXPECT_TRUE(IsKept(12, two));

  const Summary four = Read(14);  // displaces the latest
  EXPECT_TRUE(IsKept(14, four));
  EXPECT_FALSE(IsKept(15, five));  // is too late to be kept again
  EXPECT_TRUE(IsKept(14, four));
  EXPECT_TRUE(IsKept(13, three));
  EXPECT_TRUE(IsKept(12, two));
}

TEST_F(RecentDaysTest, KeepsOneLongTextThatOfTheEarlierDay) {
  Write(10, 10, kLong);
  Write(11, 11);
  Write(12, 12, kLong);
  Write(13, 13, kLong);
  const Summary two = Read(12);
  const Summary one = Read(11);
  const Summary three = Read(13);
  ASSERT_NE(three, nullptr);
  EXPECT_TRUE(IsKept(12, two));
  EXPECT_FALSE(IsKept(13, three));
  const Summary zero = Read(10);
  EXPECT_TRUE(IsKept(10, zero));
  EXPECT_TRUE(IsKept(11, one));
  EXPECT_FALSE(IsKept(12, two));
}

TEST_F(RecentDaysTest, KeepsThreeTextsOf4Mebibytes) {
  for (int day = 10; day < 13; ++day) Write(day, day, kLong - 1);
  const Summary zero = Read(10);
  const Summary one = Read(11);
  const Summary two = Read(12);
  EXPECT_TRUE(IsKept(10, zero));
  EXPECT_TRUE(IsKept(11, one));
  EXPECT_TRUE(IsKept(12, two));
}
