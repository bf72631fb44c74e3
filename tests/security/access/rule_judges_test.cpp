#include "security/access/rule_judges.h"

#include <gmock/gmock.h>

#include <future>
#include <string>
#include <vector>

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;

/// A fake expansion: marks the path with a bracket.
std::wstring Bracketed(const std::wstring& path) { return L"[" + path; }

TEST(PassesRegex, MatchesTheWholeValueAndRefusesAClimbingPath) {
  EXPECT_TRUE(PassesRegex(L"C:.*", L"C:\\x"));
  EXPECT_FALSE(PassesRegex(L"C:.*", L"C:\\x\\..\\y"));
  EXPECT_FALSE(PassesRegex(L"C:", L"C:\\x"));
}

TEST(IsContainedInList, RequiresTheSameLengthAndCharacters) {
  EXPECT_TRUE(IsContainedInList(L"red,green,blue", L"green"));
  EXPECT_FALSE(IsContainedInList(L"red,green,blue", L"gree"));
  EXPECT_FALSE(IsContainedInList(L"red,green,blue", L"greens"));
  EXPECT_FALSE(IsContainedInList(L"red,green,blue", L"Green"));
  EXPECT_FALSE(IsContainedInList(L"", L"green"));
}

TEST(IsContainedInList, KeepsABlankAfterAComma) {
  EXPECT_FALSE(IsContainedInList(L"red, green", L"green"));
  EXPECT_TRUE(IsContainedInList(L"red, green", L" green"));
}

TEST(IsContainedInList, FindsAnEmptyValueOnlyAsAnEmptyItem) {
  EXPECT_TRUE(IsContainedInList(L"red,,blue", L""));
  EXPECT_FALSE(IsContainedInList(L"red,blue,", L""));
}

TEST(IsContainedInList, RefusesAClimbingPathThatTheListHolds) {
  EXPECT_FALSE(IsContainedInList(L"C:\\a\\..\\b", L"C:\\a\\..\\b"));
  EXPECT_TRUE(IsContainedInList(L"..\\b", L"..\\b"));
}

TEST(IsContainedInList, AllowsClimbingPathsInTheList) {
  EXPECT_TRUE(IsContainedInList(L"C:\\a\\..\\b,green", L"green"));
}

TEST(BeginsWithFromList, IgnoresCase) {
  EXPECT_TRUE(BeginsWithFromList(L"D:\\,c:\\Data\\", L"C:\\DATA\\file"));
  EXPECT_FALSE(BeginsWithFromList(L"D:\\,c:\\Data\\", L"C:\\DAT"));
  EXPECT_FALSE(BeginsWithFromList(L"", L"C:\\DATA"));
}

TEST(BeginsWithFromList, AcceptsEveryValueButAClimbingPathForAnEmptyItem) {
  EXPECT_TRUE(BeginsWithFromList(L"one,,two", L"anything"));
  EXPECT_TRUE(BeginsWithFromList(L"one,,two", L""));
  EXPECT_FALSE(BeginsWithFromList(L"one,,two", L"C:\\.."));
  EXPECT_FALSE(BeginsWithFromList(L"one,two,", L"anything"));
}

TEST(BeginsWithFromList, AllowsClimbingPathsInTheList) {
  EXPECT_TRUE(BeginsWithFromList(L"C:\\a\\..\\b,green", L"greens"));
}

TEST(BeginsWithFromList, KeepsABlankAfterAComma) {
  EXPECT_FALSE(BeginsWithFromList(L"one, two", L"two"));
  EXPECT_TRUE(BeginsWithFromList(L"one, two", L" twofold"));
}

TEST(BeginsWithFromExpandedList, ComparesTheExpandedTexts) {
  std::vector<std::wstring> expanded;
  const auto expand = [&expanded](const std::wstring& path) {
    expanded.push_back(path);
    return path == L"%v%\\file" ? L"C:\\Data\\file"s : path == L"%i%" ? L"c:\\DATA"s : L"?"s;
  };
  EXPECT_TRUE(BeginsWithFromExpandedList(L"other,%i%,never", L"%v%\\file", expand));
  EXPECT_THAT(expanded, ElementsAre(L"%v%\\file", L"other", L"%i%"));
}

TEST(BeginsWithFromExpandedList, GuardsTheExpandedValue) {
  const auto climb = [](const std::wstring&) { return L"C:\\a\\..\\b"s; };
  EXPECT_FALSE(BeginsWithFromExpandedList(L"x", L"x", climb));
  const auto resolve = [](const std::wstring&) { return L"C:\\b"s; };
  EXPECT_TRUE(BeginsWithFromExpandedList(L"x", L"C:\\a\\..\\b", resolve));
  EXPECT_TRUE(BeginsWithFromExpandedList(L"C:\\a\\..\\b", L"x", resolve))
      << "items are not guarded";
}

TEST(BeginsWithFromExpandedList, AcceptsEveryValueForAnItemThatCannotBeExpanded) {
  const auto expand = [](const std::wstring& path) {
    return path == L"bad" ? L""s : Bracketed(path);
  };
  EXPECT_TRUE(BeginsWithFromExpandedList(L"good,bad", L"value", expand));
  EXPECT_FALSE(BeginsWithFromExpandedList(L"good", L"value", expand));
}

TEST(BeginsWithFromExpandedList, AcceptsAValueThatCannotBeExpandedOnlyWithSuchAnItem) {
  const auto expand = [](const std::wstring& path) {
    return path == L"bad" ? L""s : Bracketed(path);
  };
  EXPECT_FALSE(BeginsWithFromExpandedList(L"good", L"bad", expand));
  EXPECT_TRUE(BeginsWithFromExpandedList(L"good,bad", L"bad", expand));
}

/// A list of `before` items that do not fit "value", followed by one that does.
std::wstring LateItem(std::size_t before) {
  std::wstring list;
  for (; before > 0; --before) list += L"x,";
  return list + L"va";
}

TEST(BeginsWithFromExpandedList, ChecksTheFirstHundredThousandItemsOnly) {
  std::size_t expansions = 0;
  const auto expand = [&expansions](const std::wstring& path) {
    ++expansions;
    return path;
  };
  EXPECT_TRUE(BeginsWithFromExpandedList(LateItem(99'999), L"value", expand));
  EXPECT_EQ(expansions, 100'001U);  // the value and each item
  expansions = 0;
  EXPECT_FALSE(BeginsWithFromExpandedList(LateItem(100'000), L"value", expand));
  EXPECT_EQ(expansions, 100'001U);
}

TEST(RuleJudges, TreatNullsAndLoneSurrogatesAsOrdinaryCharacters) {
  for (const std::wstring& text :
       {L"\0"s, L"a\0b"s, L"\xD800"s, L"\xDC00\xD800"s, L"x\xDFFF"s, L"\xFFFE\xFFFF"s}) {
    SCOPED_TRACE(testing::PrintToString(text));
    EXPECT_TRUE(IsContainedInList(L"first," + text, text));
    EXPECT_FALSE(IsContainedInList(text + L"x", text));
    EXPECT_FALSE(IsContainedInList(text, text + L"x"));
    EXPECT_TRUE(BeginsWithFromList(L"first," + text, text + L"x"));
    EXPECT_FALSE(BeginsWithFromList(text + L"x", text));
    EXPECT_TRUE(PassesRegex(L"[^,]+", text));
    EXPECT_FALSE(PassesRegex(L"[^,]+", text + L","));
    EXPECT_TRUE(PassesRegex(text, text)) << "as a pattern";
    EXPECT_FALSE(PassesRegex(text, text + L"x"));
  }
}

TEST(RuleJudges, DoNotGuardTwoPointsAfterANullCharacter) {
  const std::wstring text = L"C:\\x\0\\..\\y"s;
  EXPECT_TRUE(PassesRegex(L"[^,]+", text));
  EXPECT_TRUE(IsContainedInList(text, text));
  EXPECT_TRUE(BeginsWithFromList(L"c:\\", text));
}

/// Calls every judge once, with different texts for each number.
bool AnswersAreRight(int number) {
  const std::wstring own = L"item" + std::to_wstring(number);
  const std::wstring list = L"first," + own + L"," + own + L"-last";
  const auto expand = [](const std::wstring& path) { return Bracketed(path); };
  return PassesRegex(L"[a-z]+[0-9]+", own) && !PassesRegex(L"[a-z]+", own) &&
         IsContainedInList(list, own) && !IsContainedInList(list, own + L"0") &&
         BeginsWithFromList(list, own + L"0") && !BeginsWithFromList(list, L"0" + own) &&
         BeginsWithFromExpandedList(list, own + L"0", expand) && !IsClimbingPath(L"C:\\" + own) &&
         IsClimbingPath(L"C:\\..\\" + own);
}

TEST(RuleJudges, AnswerOnManyThreadsAtOnce) {
  std::vector<std::future<int>> threads;
  for (int thread = 0; thread < 8; ++thread) {
    threads.push_back(std::async(std::launch::async, [thread] {
      int wrong = 0;
      for (int round = 0; round < 100; ++round) {
        if (!AnswersAreRight(thread * 1000 + round)) ++wrong;
      }
      return wrong;
    }));
  }
  for (std::future<int>& thread : threads) EXPECT_EQ(thread.get(), 0);
}

std::wstring LongList(std::size_t characters) {
  std::wstring list;
  list.reserve(characters);
  while (list.size() < characters) list += L"item,";
  return list;
}

TEST(RuleJudges, HandleListsOfTenMillionCharacters) {
  const std::wstring list = LongList(10'000'000);
  EXPECT_FALSE(IsContainedInList(list, L"other"));
  EXPECT_FALSE(BeginsWithFromList(list, L"other"));
  EXPECT_TRUE(IsContainedInList(list + L"other", L"other"));
  const std::wstring commas(10'000'000, L',');
  EXPECT_FALSE(IsContainedInList(commas, L"other"));
  EXPECT_TRUE(BeginsWithFromList(commas, L"other"));
  const std::wstring late = LateItem(5'000'000);
  EXPECT_TRUE(IsContainedInList(late, L"va"));
  EXPECT_TRUE(BeginsWithFromList(late, L"value"));
}

TEST(RuleJudges, HandleALongValueAndALongItem) {
  const std::wstring value(5'000'000, L'a');
  EXPECT_FALSE(BeginsWithFromList(value.substr(1) + L"b", value));
  EXPECT_TRUE(IsContainedInList(L"x," + value, value));
}

// A judge that reads the whole value for each item would take hours.
TEST(RuleJudges, ReadALongValueOnceForAListOfAMillionItems) {
  const std::wstring value = L"C:\\" + std::wstring(1'000'000, L'a');
  const std::wstring list = LateItem(1'000'000);
  EXPECT_FALSE(IsContainedInList(list, value));
  EXPECT_FALSE(BeginsWithFromList(list, value));
  EXPECT_FALSE(BeginsWithFromExpandedList(list, value, [](const auto& path) { return path; }));
  EXPECT_TRUE(BeginsWithFromList(list + L",c:\\AAA", value));
}

}  // namespace
}  // namespace Zq::Gantry::Security
