#include "reports/ranking_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

using namespace std::string_literals;
using Zq::Gantry::Server::Services::Wattleaf::RankingText;
using Zq::Gantry::Server::Services::Wattleaf::SplitRankingRequest;

namespace {

constexpr float kInfinite = std::numeric_limits<float>::infinity();
constexpr float kNotANumber = std::numeric_limits<float>::quiet_NaN();

void ExpectRequest(const std::wstring& input, const std::wstring& directory, int days) {
  const auto request = SplitRankingRequest(input);
  EXPECT_EQ(request.iconDirectory, directory) << input;
  EXPECT_EQ(request.days, days) << input;
}

}  // namespace

TEST(SplitRankingRequest, SplitsDirectoryAndDaysAtTheQuestionMark) {
  ExpectRequest(L"C:\\Icons?30", L"C:\\Icons", 30);
  ExpectRequest(L"C:\\My Icons\\?-1", L"C:\\My Icons\\", -1);
}

TEST(SplitRankingRequest, IsEmptyWithoutAQuestionMark) {
  ExpectRequest(L"", L"", 0);
  ExpectRequest(L"C:\\Icons", L"", 0);
  ExpectRequest(L"30", L"", 0);
}

TEST(SplitRankingRequest, AcceptsAnEmptyDirectory) { ExpectRequest(L"?7", L"", 7); }

TEST(SplitRankingRequest, HasZeroDaysForATextThatIsNotANumber) {
  ExpectRequest(L"C:\\Icons?", L"C:\\Icons", 0);
  ExpectRequest(L"C:\\Icons?week", L"C:\\Icons", 0);
}

TEST(SplitRankingRequest, LeavesLaterQuestionMarksToTheDays) {
  ExpectRequest(L"C:\\Icons?7?30", L"C:\\Icons", 7);
}

TEST(SplitRankingRequest, SplitsAtTheFirstQuestionMarkEvenInsideAPath) {
  ExpectRequest(L"\\\\?\\C:\\Icons?30", L"\\\\", 0);
}

TEST(RankingText, IsAnEmptyArrayForAnEmptyRanking) { EXPECT_EQ(RankingText({}), L"[]"); }

TEST(RankingText, WritesNameIconAndValueWithoutBlanks) {
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

TEST(RankingText, KeepsZerosInNames) {
  EXPECT_EQ(RankingText({{"a\0b"s, "", 1.0F}}), LR"([{"Name":"a\u0000b","Icon":"","Value":1.0}])");
}

TEST(RankingText, IsDecodedFromUtf8) {
  EXPECT_EQ(RankingText({{"caf\xC3\xA9 \xF0\x9F\x8C\xB3", "", 1.0F}}),
            L"[{\"Name\":\"caf\x00E9 \U0001F333\",\"Icon\":\"\",\"Value\":1.0}]");
}

TEST(RankingText, ReplacesInvalidUtf8) {
  // A lead byte at the end of a name must not swallow the quote after it.
  EXPECT_EQ(RankingText({{"caf\xE9", "J\xF6rg.png", 1.0F}}),
            L"[{\"Name\":\"caf\xFFFD\",\"Icon\":\"J\xFFFDrg.png\",\"Value\":1.0}]");
}

TEST(RankingText, EndsAfterTheColonOfAValueThatIsNotFinite) {
  for (const float value : {kInfinite, -kInfinite, kNotANumber}) {
    EXPECT_EQ(RankingText({{"A", "a.png", value}, {"B", "", 1.0F}}),
              LR"([{"Name":"A","Icon":"a.png","Value":)");
  }
}

TEST(RankingText, KeepsTheEntriesBeforeAValueThatIsNotFinite) {
  EXPECT_EQ(RankingText({{"A", "", 1.0F}, {"B", "", kNotANumber}, {"C", "", 2.0F}}),
            LR"([{"Name":"A","Icon":"","Value":1.0},{"Name":"B","Icon":"","Value":)");
}
