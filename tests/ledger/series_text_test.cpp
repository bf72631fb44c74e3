#include "ledger/series.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// The text that is written for `value`.
std::wstring NumberText(float value) {
  const std::wstring text = SeriesText({{"x", value}}, kDayLabelKey);
  const std::wstring key = L"\"Value\":";
  const auto begin = text.rfind(key) + key.size();
  return text.substr(begin, text.size() - begin - 3);  // without the "}]}" at the end
}

}  // namespace

TEST(SeriesText, WritesRangeThenValueWithoutBlanks) {
  EXPECT_EQ(SeriesText({{"2:00", 0.0F}, {"3:00", 3.5F}}, kHourLabelKey),
            LR"({"Range":[0.0,3.5],"Value":[{"Time":"2:00","Value":0.0},)"
            LR"({"Time":"3:00","Value":3.5}]})");
}

TEST(SeriesText, UsesTheLabelKeyOfEachSeries) {
  EXPECT_EQ(SeriesText({{"Mon", 1.0F}}, kDayLabelKey),
            LR"({"Range":[1.0,1.0],"Value":[{"Day":"Mon","Value":1.0}]})");
  EXPECT_EQ(SeriesText({{"Jan", 1.0F}}, kMonthLabelKey),
            LR"({"Range":[1.0,1.0],"Value":[{"Month":"Jan","Value":1.0}]})");
}

TEST(SeriesText, InitialisesTheRangeFromTheFirstEntry) {
  EXPECT_EQ(
      SeriesText({{"a", 5.0F}, {"b", 2.0F}, {"c", 9.0F}, {"d", 3.0F}}, kDayLabelKey).substr(0, 20),
      LR"({"Range":[2.0,9.0],")");
  EXPECT_EQ(SeriesText({{"a", -5.0F}, {"b", -2.0F}}, kDayLabelKey).substr(0, 22),
            LR"({"Range":[-5.0,-2.0],")");
}

TEST(SeriesText, RangeKeepsTheLastOfEqualValues) {
  // 0.0 and -0.0 are equal but have different texts.
  EXPECT_EQ(SeriesText({{"a", 0.0F}, {"b", -0.0F}}, kDayLabelKey).substr(0, 20),
            LR"({"Range":[-0.0,-0.0])");
  EXPECT_EQ(SeriesText({{"a", -0.0F}, {"b", 0.0F}}, kDayLabelKey).substr(0, 18),
            LR"({"Range":[0.0,0.0])");
}

TEST(SeriesText, RangeIsMinimumAndMaximumAtAnyPosition) {
  EXPECT_EQ(SeriesText({{"a", 1.0F}, {"b", 5.0F}, {"c", 2.0F}}, kDayLabelKey).substr(0, 18),
            LR"({"Range":[1.0,5.0])");
  EXPECT_EQ(SeriesText({{"a", 5.0F}, {"b", 3.0F}, {"c", 1.0F}}, kDayLabelKey).substr(0, 18),
            LR"({"Range":[1.0,5.0])");
  EXPECT_EQ(SeriesText({{"a", 2.0F}, {"b", 1.0F}, {"c", 5.0F}}, kDayLabelKey).substr(0, 18),
            LR"({"Range":[1.0,5.0])");
}

TEST(SeriesText, PrintsTheWidenedFloat) {
  EXPECT_EQ(NumberText(0.1F), L"0.10000000149011612");
  EXPECT_EQ(NumberText(0.0F), L"0.0");
  EXPECT_EQ(NumberText(100.0F), L"100.0");
}

TEST(SeriesText, PrintsNumbersAsTheJsonWriterDoes) {
  // The writer's algorithm does not always find the shortest text of a double: this one has one
  // digit more than ...940491, which reads back as the same double.
  EXPECT_EQ(NumberText(std::bit_cast<float>(std::uint32_t{0x3ED431F2})), L"0.41444355249404909");
}

TEST(SeriesText, WritesZeroForAValueThatIsNotFinite) {
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  EXPECT_EQ(SeriesText({{"a", kInfinity}, {"b", kNan}, {"c", 1.0F}}, kDayLabelKey),
            LR"({"Range":[0.0,1.0],"Value":[{"Day":"a","Value":0.0},)"
            LR"({"Day":"b","Value":0.0},{"Day":"c","Value":1.0}]})");
}

TEST(SeriesText, WritesARangeOfZerosForAnEmptySeries) {
  EXPECT_EQ(SeriesText({}, kDayLabelKey), LR"({"Range":[0.0,0.0],"Value":[]})");
}
