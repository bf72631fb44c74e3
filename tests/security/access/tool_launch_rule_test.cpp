#include "security/access/tool_launch.h"

#include <gtest/gtest.h>

namespace Zq::Gantry::Security {
namespace {

ToolLaunchRule RuleFor(std::vector<std::wstring> families) {
  return {std::move(families), false, nullptr};
}

TEST(AdmitsFamily, ComparesEachFamilyExactly) {
  const ToolLaunchRule rule = RuleFor({L"First_1", L"Second_2"});
  EXPECT_TRUE(AdmitsFamily(rule, L"First_1"));
  EXPECT_TRUE(AdmitsFamily(rule, L"Second_2"));
  EXPECT_FALSE(AdmitsFamily(rule, L"first_1"));
  EXPECT_FALSE(AdmitsFamily(rule, L"First_"));
  EXPECT_FALSE(AdmitsFamily(rule, L"First_11"));
  EXPECT_FALSE(AdmitsFamily(rule, std::wstring(L"First_1\0", 8)));
}

TEST(AdmitsFamily, RefusesAnEmptyFamilyEvenWhenTheRowListsOne) {
  EXPECT_FALSE(AdmitsFamily(RuleFor({L"First_1"}), L""));
  EXPECT_FALSE(AdmitsFamily(RuleFor({L"", L"First_1"}), L""));
}

TEST(AdmitsFamily, AcceptsEveryCallerForARowWithoutFamilies) {
  EXPECT_TRUE(AdmitsFamily(RuleFor({}), L""));
  EXPECT_TRUE(AdmitsFamily(RuleFor({}), L"Anybody_1"));
}

}  // namespace
}  // namespace Zq::Gantry::Security
