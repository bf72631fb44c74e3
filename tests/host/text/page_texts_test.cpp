// The small texts of the report: figures, moments, shares and icons.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "text/figure_text.h"
#include "text/moment_text.h"
#include "text/png_data_uri.h"
#include "text/rounded_shares.h"

using namespace std::string_literals;
using namespace WattleafHost;
using testing::ElementsAre;
using testing::Optional;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
const std::string kPng = "\x89PNG\r\n\x1A\n"s;

}  // namespace

TEST(HostFigureText, HasTwoDigitsAndCommasBetweenThousands) {
  EXPECT_EQ(FigureText(0.0), "0.00");
  EXPECT_EQ(FigureText(209.891129), "209.89");
  EXPECT_EQ(FigureText(999.994), "999.99");
  EXPECT_EQ(FigureText(999.996), "1,000.00");
  EXPECT_EQ(FigureText(4564.96), "4,564.96");
  EXPECT_EQ(FigureText(1234567.5), "1,234,567.50");
  EXPECT_EQ(FigureText(-1234.5), "-1,234.50");
  EXPECT_EQ(FigureText(-123.5), "-123.50");
}

TEST(HostFigureText, HasNoSignIfAllDigitsAreZero) {
  EXPECT_EQ(FigureText(-0.001), "0.00");
  EXPECT_EQ(FigureText(-0.0), "0.00");
  EXPECT_EQ(FigureText(-0.006), "-0.01");
}

TEST(HostFigureText, WritesHugeValuesWithAnExponent) {
  EXPECT_EQ(FigureText(999999999999.0), "999,999,999,999.00");
  EXPECT_EQ(FigureText(1e12), "1.00e+12");
  EXPECT_EQ(FigureText(-1.234e300), "-1.23e+300");
}

TEST(HostFigureText, WritesADashForWhatIsNoNumber) {
  for (const double value : {kNaN, kInfinity, -kInfinity}) {
    EXPECT_EQ(FigureText(value), "-");
    EXPECT_EQ(ShortFigureText(value), "-");
  }
}

TEST(HostShortFigureText, HasADigitAfterThePointBelowAHundredOnly) {
  EXPECT_EQ(ShortFigureText(15.26), "15.3");
  EXPECT_EQ(ShortFigureText(99.94), "99.9");
  EXPECT_EQ(ShortFigureText(99.96), "100");
  EXPECT_EQ(ShortFigureText(309.65), "310");
  EXPECT_EQ(ShortFigureText(4564.96), "4,565");
  EXPECT_EQ(ShortFigureText(-4564.96), "-4,565");
  EXPECT_EQ(ShortFigureText(999999.4), "999,999");
  EXPECT_EQ(ShortFigureText(999999.6), "1.0e+06");
  EXPECT_EQ(ShortFigureText(1.26e9), "1.3e+09");
}

TEST(HostShortFigureText, DistinguishesZeroFromAlmostZero) {
  EXPECT_EQ(ShortFigureText(0.0), "0");
  EXPECT_EQ(ShortFigureText(0.0499), "<0.1");
  EXPECT_EQ(ShortFigureText(0.051), "0.1");
  EXPECT_EQ(ShortFigureText(-0.02), "0.0");
}

TEST(HostLengthText, HasAtMostTwoDigitsAndNoZerosAtItsEnd) {
  EXPECT_EQ(LengthText(0.0), "0");
  EXPECT_EQ(LengthText(100.0), "100");
  EXPECT_EQ(LengthText(8.3333), "8.33");
  EXPECT_EQ(LengthText(12.5), "12.5");
}

TEST(HostMomentText, NamesTheMonthAndTheOffset) {
  EXPECT_EQ(LongMoment("2026-11-22T14:05:09+01:00"), "22 November 2026, 14:05 (UTC+01:00)");
  EXPECT_EQ(LongMoment("2026-01-02T00:00:00-03:30"), "2 January 2026, 00:00 (UTC-03:30)");
  EXPECT_EQ(LongMoment("2026-12-30T23:59:59+00:00"), "30 December 2026, 23:59 (UTC+00:00)");
}

TEST(HostMomentText, HasAShortForm) {
  EXPECT_EQ(ShortMoment("2026-11-22T14:05:09+01:00"), "2026-11-22 14:05");
}

TEST(HostMomentText, KeepsTextsOfAnotherForm) {
  for (const char* text :
       {"", "soon", "2026-11-22", "2026-13-22T14:05:09+01:00", "2026-00-22T14:05:09+01:00",
        "2026-11-22 14:05:09+01:00", "2026-1x-22T14:05:09+01:00", "2026-11-22T14:05:09Z",
        "2026-11-22T14:05:09*01:00", "2026-11-22T14:05:09+01:00x"}) {
    EXPECT_EQ(LongMoment(text), text);
    EXPECT_EQ(ShortMoment(text), text);
  }
}

TEST(HostRoundedShares, AddUpToAHundredPercent) {
  // Two thirds of a hundredth are lost in each row: two of the three get one back.
  EXPECT_THAT(TryRoundShares({100.0 / 3, 100.0 / 3, 100.0 / 3}),
              Optional(ElementsAre(3334, 3333, 3333)));
  // 16.666...: nothing is left for everything else, and nothing below zero.
  const double sixth = 100.0 / 6;
  EXPECT_THAT(TryRoundShares({sixth, sixth, sixth, sixth, sixth, sixth, 0.0}),
              Optional(ElementsAre(1667, 1667, 1667, 1667, 1666, 1666, 0)));
}

TEST(HostRoundedShares, GiveMissingHundredthsToThoseThatLostMost) {
  // Rounded down: 50.00, 30.00, 19.99 are one hundredth short; the losses are 0.1, 0.2 and 0.7.
  EXPECT_THAT(TryRoundShares({50.001, 30.002, 19.997}), Optional(ElementsAre(5000, 3000, 2000)));
}

TEST(HostRoundedShares, KeepSharesWithTwoDigits) {
  EXPECT_THAT(TryRoundShares({7.09, 5.57, 87.34}), Optional(ElementsAre(709, 557, 8734)));
  EXPECT_THAT(TryRoundShares({100.0}), Optional(ElementsAre(10000)));
}

TEST(HostRoundedShares, KeepNegativeShares) {
  EXPECT_THAT(TryRoundShares({120.0, -20.0}), Optional(ElementsAre(12000, -2000)));
  EXPECT_THAT(TryRoundShares({120.005, -20.005}), Optional(ElementsAre(12001, -2001)));
}

TEST(HostRoundedShares, AreMissingUnlessTheSharesAddUp) {
  EXPECT_EQ(TryRoundShares({}), std::nullopt);
  EXPECT_EQ(TryRoundShares({50.0, 49.99}), std::nullopt);
  EXPECT_EQ(TryRoundShares({50.0, 50.01}), std::nullopt);
  EXPECT_EQ(TryRoundShares({kNaN, 100.0}), std::nullopt);
  EXPECT_EQ(TryRoundShares({kInfinity, -kInfinity}), std::nullopt);
  EXPECT_EQ(TryRoundShares({2e9, 100.0 - 2e9}), std::nullopt);
}

TEST(HostPngDataUri, EncodesTheBytesInBase64) {
  // 89 50 4E | 47 0D 0A | 1A 0A and padding.
  EXPECT_EQ(PngDataUri(kPng), "data:image/png;base64,iVBORw0KGgo=");
  EXPECT_EQ(PngDataUri(kPng + "\xFF"), "data:image/png;base64,iVBORw0KGgr/");
  EXPECT_EQ(PngDataUri(kPng + "\xFB\xF0"), "data:image/png;base64,iVBORw0KGgr78A==");
  EXPECT_EQ(PngDataUri(kPng + "ab\0"s), "data:image/png;base64,iVBORw0KGgphYgA=");
}

TEST(HostPngDataUri, IsEmptyForAnotherFormat) {
  EXPECT_EQ(PngDataUri(""), "");
  EXPECT_EQ(PngDataUri("\x89PNG\r\n\x1A"), "");
  EXPECT_EQ(PngDataUri("<svg onload='x'>"), "");
}

TEST(HostPngDataUri, IsEmptyForAFileThatIsTooLarge) {
  const std::string largest = kPng + std::string(kMostIconBytes - kPng.size(), 'x');
  EXPECT_NE(PngDataUri(largest), "");
  EXPECT_EQ(PngDataUri(largest + "x"), "");
}
