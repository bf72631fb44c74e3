#include "reports/row_index.h"

#include <gtest/gtest.h>

#include <vector>

using Zq::Gantry::Server::Services::Wattleaf::RowIndex;

TEST(RowIndex, FindsNothingInAnEmptyIndex) { EXPECT_EQ(RowIndex().Find({0, 0}), RowIndex::kNoRow); }

TEST(RowIndex, DistinguishesTimesAndNames) {
  const std::vector<RowIndex::Identity> identities{
      {5, 0}, {5, 1}, {5, 7}, {5, 8}, {5, 4'000'000'000}, {6, 0}, {-1, 0}, {5'000'000'000, 0}};
  RowIndex index;
  for (std::uint32_t row = 0; row < identities.size(); ++row) {
    EXPECT_EQ(index.Find(identities[row]), RowIndex::kNoRow) << row;
    index.Set(identities[row], row);
  }
  for (std::uint32_t row = 0; row < identities.size(); ++row) {
    EXPECT_EQ(index.Find(identities[row]), row);
  }
}

TEST(RowIndex, ReplacesTheRowOfAnIdentity) {
  RowIndex index;
  index.Set({5, 1}, 10);
  index.Set({5, 1}, 3);
  EXPECT_EQ(index.Find({5, 1}), 3U);
}

TEST(RowIndex, ForgetsAnErasedRowOnly) {
  RowIndex index;
  index.Set({5, 1}, 10);
  index.Set({5, 2}, 11);
  index.Set({6, 1}, 12);
  index.Erase({5, 1});
  EXPECT_EQ(index.Find({5, 1}), RowIndex::kNoRow);
  EXPECT_EQ(index.Find({5, 2}), 11U);
  EXPECT_EQ(index.Find({6, 1}), 12U);
}

TEST(RowIndex, FindsARowAgainAfterTheLastOneOfItsTimeWasErased) {
  RowIndex index;
  index.Set({6, 1}, 12);
  index.Set({5, 1}, 10);
  index.Erase({5, 1});
  EXPECT_EQ(index.Find({5, 1}), RowIndex::kNoRow);
  index.Set({5, 1}, 13);
  EXPECT_EQ(index.Find({5, 1}), 13U);
  EXPECT_EQ(index.Find({6, 1}), 12U);
}
