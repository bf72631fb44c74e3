#include "catalogue/icon_target.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

using Zq::Gantry::Server::Services::Wattleaf::StaysInDirectory;
using namespace std::string_view_literals;

TEST(IconTarget, OfAnOrdinaryNameStaysInTheDirectory) {
  EXPECT_TRUE(StaysInDirectory("C:\\Icons"sv, "Meadow Office (2026)"sv));
  EXPECT_TRUE(StaysInDirectory(""sv, ".."sv));
  EXPECT_TRUE(StaysInDirectory("\\\\server\\share"sv, ""sv));
}

TEST(IconTarget, OfANameWithASeparatorOrAColonLeadsElsewhere) {
  EXPECT_FALSE(StaysInDirectory("C:\\Icons"sv, "..\\..\\Windows\\x"sv));
  EXPECT_FALSE(StaysInDirectory("C:\\Icons"sv, "../x"sv));
  EXPECT_FALSE(StaysInDirectory("C:\\Icons"sv, "x:stream"sv));
}

TEST(IconTarget, WithAZeroAnywhereLeadsElsewhere) {
  EXPECT_FALSE(StaysInDirectory("C:\\Icons"sv, "x\0y"sv));
  EXPECT_FALSE(StaysInDirectory("C:\\Ic\0ons"sv, "x"sv));
}

}  // namespace
