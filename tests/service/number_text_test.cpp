#include "service/number_text.h"

#include <gtest/gtest.h>

#include <limits>

using namespace Zq::Gantry::Server::Services::Wattleaf;

TEST(FloatToWideString, PrintsSixDigitsBehindThePoint) {
  EXPECT_EQ(FloatToWideString(0.0F), L"0.000000");
  EXPECT_EQ(FloatToWideString(3.65F), L"3.650000");
  EXPECT_EQ(FloatToWideString(-0.5F), L"-0.500000");
}

TEST(FloatToWideString, WidensToDoubleBeforePrinting) {
  // 16777217 does not fit a float; 0.1 as a float is 0.100000001490116...
  EXPECT_EQ(FloatToWideString(16777216.0F), L"16777216.000000");
  EXPECT_EQ(FloatToWideString(0.1F), L"0.100000");
}

TEST(FloatToWideString, HasNoFixedBuffer) {
  // The largest float is 2^128 - 2^104, 39 digits before the point.
  EXPECT_EQ(FloatToWideString(std::numeric_limits<float>::max()),
            L"340282346638528859811704183484516925440.000000");
}

TEST(IntToWideString, PrintsPlainDigitsAndASign) {
  EXPECT_EQ(IntToWideString(1), L"1");
  EXPECT_EQ(IntToWideString(0), L"0");
  EXPECT_EQ(IntToWideString(-1), L"-1");
  EXPECT_EQ(IntToWideString(std::numeric_limits<int>::min()), L"-2147483648");
}
