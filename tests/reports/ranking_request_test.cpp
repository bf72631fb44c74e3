#include "reports/ranking_text.h"

#include <gtest/gtest.h>

namespace {

using Zq::Gantry::Server::Services::Wattleaf::SplitRankingRequest;

void ExpectRequest(const std::wstring& input, const std::wstring& directory, int days) {
  const auto request = SplitRankingRequest(input);
  EXPECT_EQ(request.iconDirectory, directory) << input;
  EXPECT_EQ(request.days, days) << input;
}

TEST(RankingRequest, IsDirectoryThenQuestionMarkThenDays) {
  ExpectRequest(L"C:\\Icons?30", L"C:\\Icons", 30);
  ExpectRequest(L"C:\\My Icons\\?-1", L"C:\\My Icons\\", -1);
}

TEST(RankingRequest, WithoutQuestionMarkHasNoDirectoryAndNoDays) {
  ExpectRequest(L"", L"", 0);
  ExpectRequest(L"C:\\Icons", L"", 0);
  ExpectRequest(L"30", L"", 0);
}

TEST(RankingRequest, MayHaveAnEmptyDirectory) { ExpectRequest(L"?7", L"", 7); }

TEST(RankingRequest, HasNoDaysWhereTheyAreNoNumber) {
  ExpectRequest(L"C:\\Icons?", L"C:\\Icons", 0);
  ExpectRequest(L"C:\\Icons?week", L"C:\\Icons", 0);
}

TEST(RankingRequest, LeavesFurtherQuestionMarksToTheDays) {
  ExpectRequest(L"C:\\Icons?7?30", L"C:\\Icons", 7);
}

TEST(RankingRequest, EndsTheDirectoryAtTheFirstQuestionMarkAlsoInsideAPath) {
  ExpectRequest(L"\\\\?\\C:\\Icons?30", L"\\\\", 0);
}

}  // namespace
