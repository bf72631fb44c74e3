#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

#include "base/scratch_folder.h"
#include "reports/many_rows.h"

namespace {

using Clock = std::chrono::steady_clock;

/// The shortest of three runs: what else the machine does can only lengthen one.
Clock::duration TimeToFold(std::size_t rows) {
  Clock::duration shortest = Clock::duration::max();
  for (int run = 0; run < 3; ++run) {
    const TestSupport::ScratchFolder folder;
    TestSupport::WriteManyRows(folder.File(""), rows);
    const auto start = Clock::now();
    EXPECT_EQ(TestSupport::FoldReport(folder.File("")), 2 * rows);
    shortest = std::min(shortest, Clock::now() - start);
  }
  return shortest;
}

}  // namespace

// A search that walks the rows takes a hundred times as long for ten times the rows.
TEST(FoldTime, GrowsWithTheRowsAndNotWithTheirSquare) {
  const auto few = TimeToFold(2'000);
  const auto many = TimeToFold(20'000);
  EXPECT_LT(many, 40 * few);
}
