#include "reports/row_names.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

using Zq::Gantry::Server::Services::Wattleaf::RowNames;

TEST(RowNames, NumbersDifferentNamesFromZeroOn) {
  RowNames names;
  EXPECT_EQ(names.Use("b"), 0U);
  EXPECT_EQ(names.Use("a"), 1U);
  EXPECT_EQ(names.Use("b"), 0U);
  EXPECT_EQ(names.TextOf(0), "b");
  EXPECT_EQ(names.TextOf(1), "a");
  EXPECT_EQ(names.TryFind("a"), 1U);
  EXPECT_EQ(names.TryFind("c"), std::nullopt);
}

TEST(RowNames, KeepsANameUntilItsLastUseEnds) {
  RowNames names;
  const std::uint32_t number = names.Use("a");
  EXPECT_EQ(names.Use("a"), number);
  names.Release(number);
  EXPECT_EQ(names.TryFind("a"), number);
  names.Release(number);
  EXPECT_EQ(names.TryFind("a"), std::nullopt);
}

TEST(RowNames, GivesTheNumberOfAForgottenNameToTheNextOne) {
  RowNames names;
  EXPECT_EQ(names.Use("a"), 0U);
  EXPECT_EQ(names.Use("b"), 1U);
  names.Release(0);
  EXPECT_EQ(names.Use("c"), 0U);
  EXPECT_EQ(names.Use("d"), 2U);
  EXPECT_EQ(names.TextOf(0), "c");
  EXPECT_EQ(names.TextOf(1), "b");
  EXPECT_EQ(names.Use("a"), 3U);
}

TEST(RowNames, CountsTheBytesOfANameInJson) {
  RowNames names;
  EXPECT_EQ(names.BytesOf(names.Use("a\\b")), 4U);
  EXPECT_EQ(names.BytesOf(names.Use(std::string("a\0b", 3))), 8U);
  EXPECT_EQ(names.BytesOf(names.Use("")), 0U);
}
