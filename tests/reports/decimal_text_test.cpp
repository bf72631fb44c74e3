#include "reports/decimal_text.h"

#include <gtest/gtest.h>

#include <limits>

using Zq::Gantry::Server::Services::Wattleaf::DecimalNumber;

namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

}  // namespace

TEST(DecimalNumber, ReadsDigitsWithOrWithoutASign) {
  EXPECT_EQ(DecimalNumber(L"0"), 0);
  EXPECT_EQ(DecimalNumber(L"1234567890"), 1234567890);
  EXPECT_EQ(DecimalNumber(L"+17"), 17);
  EXPECT_EQ(DecimalNumber(L"-17"), -17);
  EXPECT_EQ(DecimalNumber(L"000000000000000000000000012"), 12);
}

TEST(DecimalNumber, SkipsLeadingWhiteSpace) { EXPECT_EQ(DecimalNumber(L" \t\n\v\f\r-5"), -5); }

TEST(DecimalNumber, StopsAtTheFirstCharacterThatIsNotADigit) {
  EXPECT_EQ(DecimalNumber(L"12.9"), 12);
  EXPECT_EQ(DecimalNumber(L"1,234"), 1);
  EXPECT_EQ(DecimalNumber(L"7 8"), 7);
  EXPECT_EQ(DecimalNumber(L"0x10"), 0);
}

TEST(DecimalNumber, IsZeroWithoutDigits) {
  for (const wchar_t* text :
       {L"", L"   ", L"+", L"-", L"--1", L"+-1", L"- 1", L"abc", L"/", L":"}) {
    EXPECT_EQ(DecimalNumber(text), 0);
  }
}

TEST(DecimalNumber, SaturatesAtTheLimitsOf32Bits) {
  EXPECT_EQ(DecimalNumber(L"2147483647"), kMost);
  EXPECT_EQ(DecimalNumber(L"2147483648"), kMost);
  EXPECT_EQ(DecimalNumber(L"2147483649"), kMost);
  EXPECT_EQ(DecimalNumber(L"-2147483647"), -2147483647);
  EXPECT_EQ(DecimalNumber(L"-2147483648"), kLeast);
  EXPECT_EQ(DecimalNumber(L"-2147483649"), kLeast);
  EXPECT_EQ(DecimalNumber(L"99999999999999999999999999999999999999"), kMost);
  EXPECT_EQ(DecimalNumber(L"-99999999999999999999999999999999999999"), kLeast);
}

TEST(DecimalNumber, AcceptsAsciiOnly) {
  EXPECT_EQ(DecimalNumber(L"\x0663"), 0);  // an Arabic-Indic digit
  EXPECT_EQ(DecimalNumber(L"\xFF13"), 0);  // a fullwidth digit
  EXPECT_EQ(DecimalNumber(L"\x00A0"
                          L"3"),
            0);  // a no-break space
}

TEST(DecimalNumber, StopsAtAZeroCharacter) {
  EXPECT_EQ(DecimalNumber(L"1\0"
                          L"2"),
            1);
}
