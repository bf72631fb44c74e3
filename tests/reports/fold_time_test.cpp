#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <limits>

#include "base/scratch_folder.h"
#include "reports/many_rows.h"

namespace {

/// The shortest of three runs: what else the machine does can only lengthen one. In time of the
/// processor, where the C library counts that.
std::clock_t TimeToFold(std::size_t rows) {
  std::clock_t shortest = std::numeric_limits<std::clock_t>::max();
  for (int run = 0; run < 3; ++run) {
    const TestSupport::ScratchFolder folder;
    TestSupport::WriteManyRows(folder.File(""), rows);
    const std::clock_t start = std::clock();
    EXPECT_EQ(TestSupport::FoldReport(folder.File("")), 2 * rows);
    shortest = std::min(shortest, std::clock() - start);
  }
  return shortest;
}

}  // namespace

// A search that walks the rows takes a hundred times as long for ten times the rows.
TEST(FoldTime, GrowsWithTheRowsAndNotWithTheirSquare) {
  const std::clock_t few = std::max<std::clock_t>(TimeToFold(2'000), 1);
  const auto many = TimeToFold(20'000);
  EXPECT_LT(many, 40 * few);
}
