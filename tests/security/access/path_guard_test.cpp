#include "security/access/rule_judges.h"

#include <gtest/gtest.h>

#include <array>
#include <regex>
#include <string>

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;

TEST(HasPathShape, AcceptsTheFourBeginningsOfAPath) {
  EXPECT_TRUE(HasPathShape(L"C:\\folder"));
  EXPECT_TRUE(HasPathShape(L"7:"));
  EXPECT_TRUE(HasPathShape(L"_:"));
  EXPECT_TRUE(HasPathShape(L"\\\\server\\share"));
  EXPECT_TRUE(HasPathShape(L"http://host"));
  EXPECT_TRUE(HasPathShape(L"https:"));
  EXPECT_TRUE(HasPathShape(L"%windir%\\x"));
  EXPECT_TRUE(HasPathShape(L"%PROGRAMFILES(x86)%"));
}

TEST(HasPathShape, RejectsOtherTexts) {
  for (const std::wstring text : {L"", L":", L"C", L"folder\\file", L"/usr", L".:", L"ftp://host",
                                  L"HTTP://host", L"httpss:", L"%%", L"%windir", L"%win dir%",
                                  L"%a-b%", L" C:\\x", L"x%a%", L"cd:", L" https:", L"xhttp:"}) {
    EXPECT_FALSE(HasPathShape(text)) << testing::PrintToString(text);
  }
}

TEST(HasPathShape, ChecksTheStartOfTheTextAndNotOfALine) {
  EXPECT_FALSE(HasPathShape(L"word\nC:\\x"));
  EXPECT_FALSE(HasPathShape(L"\r\n\\x"));
}

TEST(HasTraversal, FindsTwoPointsInARow) {
  EXPECT_TRUE(HasTraversal(L".."));
  EXPECT_TRUE(HasTraversal(L"a/../b"));
  EXPECT_TRUE(HasTraversal(L"wait..."));
  EXPECT_FALSE(HasTraversal(L".a.b./."));
  EXPECT_FALSE(HasTraversal(L""));
}

TEST(IsClimbingPath, RejectsADriveLetterAndTwoPoints) {
  EXPECT_TRUE(IsClimbingPath(L"C:\\safe\\..\\other"));
  EXPECT_FALSE(IsClimbingPath(L"C:\\safe\\other"));
}

TEST(IsClimbingPath, AcceptsARelativePathThatBeginsWithTwoPoints) {
  EXPECT_FALSE(IsClimbingPath(L"..\\other"));
  EXPECT_FALSE(IsClimbingPath(L"../other"));
}

TEST(IsClimbingPath, AcceptsPlainTextWithTwoPoints) { EXPECT_FALSE(IsClimbingPath(L"from 1..9")); }

TEST(IsClimbingPath, RejectsAVariableAndTwoPoints) {
  EXPECT_TRUE(IsClimbingPath(L"%TEMP%\\..\\x"));
  EXPECT_TRUE(IsClimbingPath(L"%(a|b)%.."));
}

TEST(IsClimbingPath, StopsAtTheFirstNullCharacter) {
  EXPECT_FALSE(IsClimbingPath(L"C:\\x\0.."s));
  EXPECT_FALSE(IsClimbingPath(L"\0C:\\.."s));
  EXPECT_TRUE(IsClimbingPath(L"C:\\..\0x"s));
  EXPECT_FALSE(IsClimbingPath(L"C:\\x\0..\0"s));
}

TEST(PathGuard, DoesNotReadPastTheEndOfTheText) {
  EXPECT_FALSE(HasPathShape(std::wstring_view(L"C:", 1)));
  EXPECT_FALSE(HasPathShape(std::wstring_view(L"%a%", 2)));
  EXPECT_FALSE(HasPathShape(std::wstring_view(L"http:", 4)));
  EXPECT_FALSE(HasPathShape(std::wstring_view(L"\\", 0)));
  EXPECT_FALSE(HasTraversal(std::wstring_view(L"..", 1)));
}

// The expressions that the guard implements by hand.
const std::wregex& Shape() {
  static const std::wregex shape(LR"(^((?:[\w]\:|\\)|(http[s]?\:)|(\%[\(|\w|\)]+\%))+)");
  return shape;
}

const std::wregex& Traversal() {
  static const std::wregex traversal(LR"(((\/+)?\.\.(\/+)?))");
  return traversal;
}

void ExpectAgreement(const std::wstring& text) {
  // At the beginning of the text only: for some standard libraries ^ is the beginning of any line.
  constexpr auto kFromTheBeginning = std::regex_constants::match_continuous;
  EXPECT_EQ(HasPathShape(text), std::regex_search(text.c_str(), Shape(), kFromTheBeginning))
      << testing::PrintToString(text);
  EXPECT_EQ(HasTraversal(text), std::regex_search(text.c_str(), Traversal()))
      << testing::PrintToString(text);
}

constexpr std::array<const wchar_t*, 16> kParts{L"a",    L"Z",  L"_",      L":", L"\\", L"%",
                                                L".",    L"..", L"/",      L"(", L"|",  L"\n",
                                                L"http", L"s",  L"\x00e9", L""};

TEST(PathGuard, AgreesWithTheExpressionsForAllTextsOfFourParts) {
  for (const wchar_t* first : kParts) {
    for (const wchar_t* second : kParts) {
      for (const wchar_t* third : kParts) {
        for (const wchar_t* fourth : kParts) {
          ExpectAgreement(std::wstring(first) + second + third + fourth);
        }
      }
    }
  }
}

TEST(PathGuard, AgreesWithTheExpressionsOnWordCharacters) {
  for (unsigned code = 1; code <= 0xFFFF; ++code) {
    const std::wstring character(1, static_cast<wchar_t>(code));
    ExpectAgreement(character + L":..");
    ExpectAgreement(L"%" + character + L"%");
  }
}

TEST(IsClimbingPath, HandlesMillionsOfCharacters) {
  EXPECT_FALSE(IsClimbingPath(std::wstring(1'000'000, L'\\')));
  EXPECT_TRUE(IsClimbingPath(std::wstring(1'000'000, L'\\') + L".."));
  EXPECT_TRUE(IsClimbingPath(L"%" + std::wstring(10'000'000, L'a') + L"%.."));
  std::wstring drives;
  for (int i = 0; i < 500'000; ++i) drives += L"a:";
  EXPECT_TRUE(IsClimbingPath(drives + L".."));
}

TEST(IsClimbingPath, TreatsLoneSurrogatesAsOrdinaryCharacters) {
  EXPECT_FALSE(IsClimbingPath(L"\xD800.."));
  EXPECT_TRUE(IsClimbingPath(L"C:\xDFFF.."));
}

}  // namespace
}  // namespace Zq::Gantry::Security
