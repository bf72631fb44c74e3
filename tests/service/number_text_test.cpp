#include "service/result_text.h"

#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <string>

using namespace Zq::Gantry::Server::Services::Wattleaf;

TEST(FloatToWideString, PrintsSixDecimalPlaces) {
  EXPECT_EQ(FloatToWideString(0.0F), L"0.000000");
  EXPECT_EQ(FloatToWideString(3.65F), L"3.650000");
  EXPECT_EQ(FloatToWideString(-0.5F), L"-0.500000");
}

TEST(FloatToWideString, WidensToDoubleBeforePrinting) {
  // 16777217 does not fit a float; 0.1 as a float is 0.100000001490116...
  EXPECT_EQ(FloatToWideString(16777216.0F), L"16777216.000000");
  EXPECT_EQ(FloatToWideString(0.1F), L"0.100000");
}

TEST(FloatToWideString, PrintsTheLargestFloatInFull) {
  // The largest float is 2^128 - 2^104, 39 digits before the point.
  EXPECT_EQ(FloatToWideString(std::numeric_limits<float>::max()),
            L"340282346638528859811704183484516925440.000000");
}

TEST(FloatToWideString, PrintsTheLowestFloatInfinitiesAndNan) {
  EXPECT_EQ(FloatToWideString(std::numeric_limits<float>::lowest()),
            L"-340282346638528859811704183484516925440.000000");
  EXPECT_EQ(FloatToWideString(std::numeric_limits<float>::infinity()), L"inf");
  EXPECT_EQ(FloatToWideString(-std::numeric_limits<float>::infinity()), L"-inf");
  EXPECT_EQ(FloatToWideString(std::numeric_limits<float>::quiet_NaN()), L"nan");
}

TEST(FloatToWideString, RoundsTheExactValueHalfToEven) {
  // 2^-20 is nearest to one millionth. 2^-7 and 3 * 2^-7 end in an exact half after the sixth
  // decimal place, which is rounded to the even digit.
  EXPECT_EQ(FloatToWideString(0.00000095367431640625F), L"0.000001");
  EXPECT_EQ(FloatToWideString(0.0078125F), L"0.007812");
  EXPECT_EQ(FloatToWideString(0.0234375F), L"0.023438");
}

TEST(FloatToWideString, UsesADecimalPointInEveryLocale) {
  const std::string before = std::setlocale(LC_NUMERIC, nullptr);
  const char* comma = nullptr;
  for (const char* name : {"German_Germany.1252", "de-DE", "de_DE.UTF-8"}) {
    if (comma == nullptr) comma = std::setlocale(LC_NUMERIC, name);
  }
  if (comma == nullptr) GTEST_SKIP() << "this system has no locale with a decimal comma";
  EXPECT_EQ(FloatToWideString(3.65F), L"3.650000");
  std::setlocale(LC_NUMERIC, before.c_str());
}

TEST(IntToWideString, PrintsPlainDigitsAndASign) {
  EXPECT_EQ(IntToWideString(1), L"1");
  EXPECT_EQ(IntToWideString(0), L"0");
  EXPECT_EQ(IntToWideString(-1), L"-1");
  EXPECT_EQ(IntToWideString(std::numeric_limits<int>::min()), L"-2147483648");
}
