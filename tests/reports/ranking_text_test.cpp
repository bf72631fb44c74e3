#include "reports/ranking_text.h"

#include <gtest/gtest.h>

#include <limits>

using namespace std::string_literals;
using Zq::Gantry::Server::Services::Wattleaf::RankingText;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

}  // namespace

TEST(RankingText, OfNothingIsTwoCharacters) { EXPECT_EQ(RankingText({}), L"[]"); }

TEST(RankingText, HasNameIconAndValueInThisOrderWithoutBlanks) {
  EXPECT_EQ(RankingText({{"Meadow", "x.png", 37.5F}, {"Alder Office", "", 0.0F}}),
            LR"([{"Name":"Meadow","Icon":"x.png","Value":37.5},)"
            LR"({"Name":"Alder Office","Icon":"","Value":0.0}])");
}

TEST(RankingText, WritesTheFloatAsADouble) {
  EXPECT_EQ(RankingText({{"", "", 12.34F}}),
            LR"([{"Name":"","Icon":"","Value":12.34000015258789}])");
  EXPECT_EQ(RankingText({{"", "", 100.0F}, {"", "", -0.0F}, {"", "", 4294967296.0F}}),
            LR"([{"Name":"","Icon":"","Value":100.0},{"Name":"","Icon":"","Value":-0.0},)"
            LR"({"Name":"","Icon":"","Value":4294967296.0}])");
}

TEST(RankingText, EscapesWhatJsonNeeds) {
  EXPECT_EQ(RankingText({{"a\"b\n/", "C:\\Icons\\a.png", 1.0F}}),
            LR"([{"Name":"a\"b\n/","Icon":"C:\\Icons\\a.png","Value":1.0}])");
}

TEST(RankingText, KeepsZerosInsideNames) {
  EXPECT_EQ(RankingText({{"a\0b"s, "", 1.0F}}), LR"([{"Name":"a\u0000b","Icon":"","Value":1.0}])");
}

TEST(RankingText, IsDecodedFromUtf8) {
  EXPECT_EQ(RankingText({{"caf\xC3\xA9 \xF0\x9F\x8C\xB3", "", 1.0F}}),
            L"[{\"Name\":\"caf\x00E9 \U0001F333\",\"Icon\":\"\",\"Value\":1.0}]");
}

TEST(RankingText, ReplacesBytesThatAreNoUtf8) {
  // A lead byte at the end of a name must not swallow the quote behind it.
  EXPECT_EQ(RankingText({{"caf\xE9", "J\xF6rg.png", 1.0F}}),
            L"[{\"Name\":\"caf\xFFFD\",\"Icon\":\"J\xFFFDrg.png\",\"Value\":1.0}]");
}

TEST(RankingText, EndsBehindTheColonOfAValueThatIsNotFinite) {
  for (const float value : {kInfinity, -kInfinity, kNoNumber}) {
    EXPECT_EQ(RankingText({{"A", "a.png", value}, {"B", "", 1.0F}}),
              LR"([{"Name":"A","Icon":"a.png","Value":)");
  }
}

TEST(RankingText, KeepsTheEntriesBeforeAValueThatIsNotFinite) {
  EXPECT_EQ(RankingText({{"A", "", 1.0F}, {"B", "", kNoNumber}, {"C", "", 2.0F}}),
            LR"([{"Name":"A","Icon":"","Value":1.0},{"Name":"B","Icon":"","Value":)");
}
