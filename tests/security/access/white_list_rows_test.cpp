#include "security/access/white_list_rows.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "security/access/exemption_white_lists.h"

namespace Zq::Gantry::Security {
namespace {

TEST(CopyRows, ReturnsAnEmptyListForAnEmptyList) {
  const auto copy = CopyRows(std::vector<UwpMatchingDescriptor>());
  ASSERT_NE(copy, nullptr);
  EXPECT_TRUE(copy->empty());
}

TEST(CopyRows, CopiesEveryRowInOrder) {
  const auto copy = CopyRows(std::vector<int>{4, 5, 6, 7});
  EXPECT_EQ(*copy, (std::vector<int>{4, 5, 6, 7}));
}

TEST(AnyRowFits, ThrowsOutOfRangeWithItsTextWhenTheListShrinks) {
  std::vector<int> rows = {1, 2, 3};
  const auto shrink = [&rows](int) {
    rows.pop_back();
    return false;
  };
  try {
    static_cast<void>(AnyRowFits(rows, shrink));
    FAIL() << "nothing was thrown";
  } catch (const std::out_of_range& failure) {
    EXPECT_STREQ(failure.what(), "invalid vector subscript");
  }
}

TEST(AnyRowFits, VisitsEveryRow) {
  const std::vector<int> rows = [] {
    std::vector<int> numbers(1000, 0);
    numbers.back() = 1;
    return numbers;
  }();
  EXPECT_TRUE(AnyRowFits(rows, [](int row) { return row == 1; }));
  EXPECT_FALSE(AnyRowFits(rows, [](int row) { return row == 2; }));
}

TEST(AnyRowFits, ThrowsOutOfRangeForTheRowRightAfterTheEnd) {
  std::vector<int> rows = {1, 2};
  const auto shrink = [&rows](int) {
    rows.pop_back();
    return false;
  };
  EXPECT_THROW(static_cast<void>(AnyRowFits(rows, shrink)), std::out_of_range);
  EXPECT_EQ(rows.size(), 1U) << "judged once";
}

TEST(AnyRowFits, JudgesACopyOfTheRow) {
  std::vector<int> rows = {1};
  EXPECT_TRUE(AnyRowFits(rows, [&rows](const int& row) {
    rows.front() = 9;
    return row == 1;
  }));
}

TEST(AnyRowFits, StopsAtTheFirstRowThatFits) {
  int judged = 0;
  EXPECT_TRUE(AnyRowFits(std::vector<int>{1, 2, 3}, [&judged](int row) {
    ++judged;
    return row == 2;
  }));
  EXPECT_EQ(judged, 2);
}

}  // namespace
}  // namespace Zq::Gantry::Security
