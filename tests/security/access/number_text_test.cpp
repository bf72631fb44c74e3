#include "security/access/rule_judges.h"

#include <gtest/gtest.h>

#include <limits>

namespace Zq::Gantry::Security {
namespace {

TEST(ShortestNumberText, WritesAWholeNumberWithoutAPoint) {
  EXPECT_EQ(ShortestNumberText(3.0), L"3");
  EXPECT_EQ(ShortestNumberText(-12345.0), L"-12345");
  EXPECT_EQ(ShortestNumberText(-0.0), L"-0");
}

TEST(ShortestNumberText, WritesTheShortestTextThatReadsBack) {
  EXPECT_EQ(ShortestNumberText(0.1), L"0.1");
  EXPECT_EQ(ShortestNumberText(0.1 + 0.2), L"0.30000000000000004");
  EXPECT_EQ(ShortestNumberText(1.0 / 3.0), L"0.3333333333333333");
}

TEST(ShortestNumberText, UsesAnExponentWhereThatIsShorter) {
  EXPECT_EQ(ShortestNumberText(100000.0), L"1e+05");
  EXPECT_EQ(ShortestNumberText(1e21), L"1e+21");
  EXPECT_EQ(ShortestNumberText(123456.0), L"123456");
  EXPECT_EQ(ShortestNumberText(-1.7976931348623157e308), L"-1.7976931348623157e+308");
}

TEST(ShortestNumberText, WritesInfinityAndNotANumberAsWords) {
  EXPECT_EQ(ShortestNumberText(std::numeric_limits<double>::infinity()), L"inf");
  EXPECT_EQ(ShortestNumberText(std::numeric_limits<double>::quiet_NaN()), L"nan");
}

}  // namespace
}  // namespace Zq::Gantry::Security
