#include "reports/decimal_text.h"

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;
using Zq::Gantry::Server::Services::Wattleaf::DecimalInt32;

TEST(DecimalText, ReadsDigits) {
  EXPECT_EQ(DecimalInt32(L"0"), 0);
  EXPECT_EQ(DecimalInt32(L"30"), 30);
  EXPECT_EQ(DecimalInt32(L"007"), 7);
}

TEST(DecimalText, SkipsWhiteSpaceBeforeASign) {
  EXPECT_EQ(DecimalInt32(L" \t\n\v\f\r7"), 7);
  EXPECT_EQ(DecimalInt32(L"  -7"), -7);
  EXPECT_EQ(DecimalInt32(L"+7"), 7);
  EXPECT_EQ(DecimalInt32(L"- 7"), 0);
}

TEST(DecimalText, EndsAtTheFirstCharacterThatIsNoDigit) {
  EXPECT_EQ(DecimalInt32(L"7days"), 7);
  EXPECT_EQ(DecimalInt32(L"7.9"), 7);
  EXPECT_EQ(DecimalInt32(L"1e3"), 1);
  EXPECT_EQ(DecimalInt32(L"7?30"), 7);
}

TEST(DecimalText, EndsAtAZero) {
  EXPECT_EQ(DecimalInt32(L"1\0"
                         L"2"s),
            1);
  EXPECT_EQ(DecimalInt32(L"\0"
                         L"2"s),
            0);
}

TEST(DecimalText, IsZeroForWhatIsNoNumber) {
  for (const wchar_t* text : {L"", L" ", L"-", L"+", L"--7", L"+-7", L"x7", L"0x10"}) {
    EXPECT_EQ(DecimalInt32(text), 0) << text;
  }
}

TEST(DecimalText, TakesNoDigitsOfAnotherScript) {
  EXPECT_EQ(DecimalInt32(L"\x0663"), 0);  // Arabic-Indic three
  EXPECT_EQ(DecimalInt32(L"\xFF17"), 0);  // full-width seven
}

TEST(DecimalText, EndsAtTheLimitsOf32Bits) {
  EXPECT_EQ(DecimalInt32(L"2147483647"), 2147483647);
  EXPECT_EQ(DecimalInt32(L"2147483648"), 2147483647);
  EXPECT_EQ(DecimalInt32(L"-2147483648"), -2147483647 - 1);
  EXPECT_EQ(DecimalInt32(L"-2147483649"), -2147483647 - 1);
  EXPECT_EQ(DecimalInt32(std::wstring(100'000, L'9')), 2147483647);
  EXPECT_EQ(DecimalInt32(L"-" + std::wstring(100'000, L'9')), -2147483647 - 1);
}

}  // namespace
