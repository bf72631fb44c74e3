#include <gtest/gtest.h>

#include <string>

#include "answers/bar_chart.h"
#include "host/answers/answer_blocks.h"
#include "text/printable.h"

using namespace WattleafHost;
using TestSupport::Blocks;

namespace {

const std::string kHalf = "\xE2\x96\x8C";

}  // namespace

TEST(HostBarChart, DrawsBarsInProportionToTheLargestValue) {
  const Series series{0.0, 4.0, {{"9:00", 4.0}, {"10:00", 1.0}}};
  EXPECT_EQ(BarChart(series),
            "   9:00  4.00  " + Blocks(60) + "\n  10:00  1.00  " + Blocks(15) + "\n");
}

TEST(HostBarChart, RoundsBarsToHalfACharacter) {
  // 0.375 of 60 characters are 22.5.
  const Series series{0.0, 8.0, {{"Mon", 8.0}, {"Tue", 3.0}}};
  EXPECT_EQ(BarChart(series),
            "  Mon  8.00  " + Blocks(60) + "\n  Tue  3.00  " + Blocks(22) + kHalf + "\n");
}

TEST(HostBarChart, DrawsABarForEachValueAboveZero) {
  const Series series{0.0, 1000.0, {{"Jan", 1000.0}, {"Feb", 0.5}}};
  EXPECT_EQ(BarChart(series),
            "  Jan  1000.00  " + Blocks(60) + "\n  Feb     0.50  " + kHalf + "\n");
}

TEST(HostBarChart, DrawsNoBarForZeroAndNegativeValues) {
  const Series series{-1.0, 0.0, {{"Sat", 0.0}, {"Sun", -1.0}}};
  EXPECT_EQ(BarChart(series), "  Sat   0.00\n  Sun  -1.00\n");
}

TEST(HostBarChart, LongestBarHasTheGivenLength) {
  const Series series{0.0, 4.0, {{"a", 4.0}, {"b", 1.0}}};
  EXPECT_EQ(BarChart(series, 8), "  a  4.00  " + Blocks(8) + "\n  b  1.00  " + Blocks(2) + "\n");
}

TEST(HostBarChart, IsEmptyForAnEmptySeries) { EXPECT_EQ(BarChart(Series{}), ""); }

TEST(HostPrintable, CutsBetweenCharacters) {
  // Each of the seven is a character of two bytes.
  std::string text;
  for (int i = 0; i < 7; ++i) text += "\xC3\xA4";
  EXPECT_EQ(OneLine(text, 7), text);
  EXPECT_EQ(OneLine(text, 6), "\xC3\xA4\xC3\xA4\xC3\xA4...");
}

TEST(HostPrintable, ReplacesControlCharacters) {
  EXPECT_EQ(OneLine("a\x1B[2Jb\r\n\x7F", 20), "a?[2Jb???");
}

TEST(HostPrintable, PadsByCharactersNotBytes) {
  EXPECT_EQ(PadRight("\xC3\xA4", 3), "\xC3\xA4  ");
  EXPECT_EQ(PadLeft("\xC3\xA4", 3), "  \xC3\xA4");
  EXPECT_EQ(PadLeft("abcd", 3), "abcd");
}
