#include "security/access/rule_judges.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <map>
#include <stdexcept>
#include <vector>

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// Written as an expansion gives it: in brackets.
std::wstring Bracketed(const std::wstring& path) { return L"[" + path; }

TEST(PassesRegex, WantsTheWholeValueAndNoClimbingPath) {
  EXPECT_TRUE(PassesRegex(L"C:.*", L"C:\\x"));
  EXPECT_FALSE(PassesRegex(L"C:.*", L"C:\\x\\..\\y"));
  EXPECT_FALSE(PassesRegex(L"C:", L"C:\\x"));
}

TEST(IsContainedInList, WantsTheSameLengthAndTheSameCharacters) {
  EXPECT_TRUE(IsContainedInList(L"red,green,blue", L"green"));
  EXPECT_FALSE(IsContainedInList(L"red,green,blue", L"gree"));
  EXPECT_FALSE(IsContainedInList(L"red,green,blue", L"greens"));
  EXPECT_FALSE(IsContainedInList(L"red,green,blue", L"Green"));
  EXPECT_FALSE(IsContainedInList(L"", L"green"));
}

TEST(IsContainedInList, ABlankBehindACommaBelongsToTheItem) {
  EXPECT_FALSE(IsContainedInList(L"red, green", L"green"));
  EXPECT_TRUE(IsContainedInList(L"red, green", L" green"));
}

TEST(IsContainedInList, OnlyAnEmptyItemIsEqualToAnEmptyValue) {
  EXPECT_TRUE(IsContainedInList(L"red,,blue", L""));
  EXPECT_FALSE(IsContainedInList(L"red,blue,", L""));
}

TEST(IsContainedInList, RefusesAClimbingPathThatItHolds) {
  EXPECT_FALSE(IsContainedInList(L"C:\\a\\..\\b", L"C:\\a\\..\\b"));
  EXPECT_TRUE(IsContainedInList(L"..\\b", L"..\\b"));
}

TEST(IsContainedInList, TheListItselfMayHoldClimbingPaths) {
  EXPECT_TRUE(IsContainedInList(L"C:\\a\\..\\b,green", L"green"));
}

TEST(BeginsWithFromList, DoesNotMindTheCase) {
  EXPECT_TRUE(BeginsWithFromList(L"D:\\,c:\\Data\\", L"C:\\DATA\\file"));
  EXPECT_FALSE(BeginsWithFromList(L"D:\\,c:\\Data\\", L"C:\\DAT"));
  EXPECT_FALSE(BeginsWithFromList(L"", L"C:\\DATA"));
}

TEST(BeginsWithFromList, AnEmptyItemPassesEveryValueThatTheGuardLetsThrough) {
  EXPECT_TRUE(BeginsWithFromList(L"one,,two", L"anything"));
  EXPECT_TRUE(BeginsWithFromList(L"one,,two", L""));
  EXPECT_FALSE(BeginsWithFromList(L"one,,two", L"C:\\.."));
  EXPECT_FALSE(BeginsWithFromList(L"one,two,", L"anything"));
}

TEST(BeginsWithFromList, TheListItselfMayHoldClimbingPaths) {
  EXPECT_TRUE(BeginsWithFromList(L"C:\\a\\..\\b,green", L"greens"));
}

TEST(BeginsWithFromList, ABlankBehindACommaBelongsToTheItem) {
  EXPECT_FALSE(BeginsWithFromList(L"one, two", L"two"));
  EXPECT_TRUE(BeginsWithFromList(L"one, two", L" twofold"));
}

TEST(BeginsWithFromExpandedList, ComparesWhatWasExpanded) {
  std::vector<std::wstring> asked;
  const auto expand = [&asked](const std::wstring& path) {
    asked.push_back(path);
    return path == L"%v%\\file" ? L"C:\\Data\\file"s : path == L"%i%" ? L"c:\\DATA"s : L"?"s;
  };
  EXPECT_TRUE(BeginsWithFromExpandedList(L"other,%i%,never", L"%v%\\file", expand));
  EXPECT_THAT(asked, ElementsAre(L"%v%\\file", L"other", L"%i%"));
}

TEST(BeginsWithFromExpandedList, GuardsTheExpandedValue) {
  const auto climb = [](const std::wstring&) { return L"C:\\a\\..\\b"s; };
  EXPECT_FALSE(BeginsWithFromExpandedList(L"x", L"x", climb));
  const auto settle = [](const std::wstring&) { return L"C:\\b"s; };
  EXPECT_TRUE(BeginsWithFromExpandedList(L"x", L"C:\\a\\..\\b", settle));
  EXPECT_TRUE(BeginsWithFromExpandedList(L"C:\\a\\..\\b", L"x", settle)) << "items are not guarded";
}

TEST(BeginsWithFromExpandedList, AnItemThatCannotBeExpandedPassesEveryValue) {
  const auto expand = [](const std::wstring& path) {
    return path == L"bad" ? L""s : Bracketed(path);
  };
  EXPECT_TRUE(BeginsWithFromExpandedList(L"good,bad", L"value", expand));
  EXPECT_FALSE(BeginsWithFromExpandedList(L"good", L"value", expand));
}

TEST(BeginsWithFromExpandedList, AValueThatCannotBeExpandedPassesOnlyWithSuchAnItem) {
  const auto expand = [](const std::wstring& path) {
    return path == L"bad" ? L""s : Bracketed(path);
  };
  EXPECT_FALSE(BeginsWithFromExpandedList(L"good", L"bad", expand));
  EXPECT_TRUE(BeginsWithFromExpandedList(L"good,bad", L"bad", expand));
}

/// The limits that a rule has, by name; and which were asked for.
struct Limits {
  std::map<std::wstring, std::wstring> texts;
  std::vector<std::wstring> asked{};

  LimitText Reader() {
    return [this](const wchar_t* name) -> std::optional<std::wstring> {
      asked.emplace_back(name);
      const auto row = texts.find(name);
      if (row == texts.end()) return std::nullopt;
      return row->second;
    };
  }
};

bool InRange(double number, std::map<std::wstring, std::wstring> texts) {
  return LiesInNumericRange(number, Limits{std::move(texts)}.Reader());
}

TEST(LiesInNumericRange, DropsTheFraction) {
  EXPECT_FALSE(InRange(0.5, {{L"min", L"1"}, {L"max", L"10"}}));
  EXPECT_TRUE(InRange(10.9, {{L"min", L"1"}, {L"max", L"10"}}));
  EXPECT_TRUE(InRange(9.99, {{L"max", L"9"}}));
  EXPECT_TRUE(InRange(-9.99, {{L"min", L"-9"}}));
  EXPECT_TRUE(InRange(-0.9, {{L"min", L"0"}, {L"max", L"0"}}));
}

TEST(LiesInNumericRange, BothLimitsAreInclusive) {
  EXPECT_TRUE(InRange(1, {{L"min", L"1"}, {L"max", L"1"}}));
  EXPECT_FALSE(InRange(0, {{L"min", L"1"}, {L"max", L"1"}}));
  EXPECT_FALSE(InRange(2, {{L"min", L"1"}, {L"max", L"1"}}));
}

TEST(LiesInNumericRange, AMissingLimitIsNone) {
  EXPECT_TRUE(InRange(-1e6, {{L"max", L"10"}}));
  EXPECT_TRUE(InRange(1e6, {{L"min", L"10"}}));
  EXPECT_TRUE(InRange(0, {}));
}

TEST(LiesInNumericRange, ReadsALimitLikeTheStandardLibrary) {
  EXPECT_TRUE(InRange(12, {{L"min", L" \t\n+12 apples"}}));
  EXPECT_FALSE(InRange(11, {{L"min", L" \t\n+12 apples"}}));
  EXPECT_TRUE(InRange(0, {{L"max", L"0x10"}}));
  EXPECT_FALSE(InRange(1, {{L"max", L"0x10"}}));
  EXPECT_TRUE(InRange(7, {{L"min", L"7\0z"s}}));
}

TEST(LiesInNumericRange, ALimitWithoutANumberPassesNothing) {
  for (const wchar_t* text : {L"", L" ", L"ten", L"-", L"+ 1", L".5"}) {
    EXPECT_FALSE(InRange(1, {{L"min", text}}));
    EXPECT_FALSE(InRange(1, {{L"max", text}}));
  }
}

TEST(LiesInNumericRange, ALimitBeyond32BitsIsRaised) {
  for (const wchar_t* text :
       {L"2147483648", L"-2147483649", L"4294967296", L"99999999999999999999999"}) {
    EXPECT_THROW(InRange(1, {{L"min", text}}), std::out_of_range);
    EXPECT_THROW(InRange(1, {{L"max", text}}), std::out_of_range);
  }
}

TEST(LiesInNumericRange, ANumberBelowTheFirstLimitDoesNotReachTheSecond) {
  Limits limits{{{L"min", L"5"}, {L"max", L"4294967296"}}};
  EXPECT_FALSE(LiesInNumericRange(4, limits.Reader()));
  EXPECT_THAT(limits.asked, ElementsAre(L"min"));
  EXPECT_THROW(LiesInNumericRange(6, limits.Reader()), std::out_of_range);
}

TEST(LiesInNumericRange, KnowsTheBordersOf32Bits) {
  const std::map<std::wstring, std::wstring> all{{L"min", L"-2147483648"}, {L"max", L"2147483647"}};
  EXPECT_TRUE(InRange(2147483647.0, all));
  EXPECT_TRUE(InRange(2147483647.99, all));
  EXPECT_FALSE(InRange(2147483648.0, all));
  EXPECT_TRUE(InRange(-2147483648.0, all));
  EXPECT_TRUE(InRange(-2147483648.99, all));
  EXPECT_FALSE(InRange(-2147483649.0, all));
}

TEST(LiesInNumericRange, ANumberBeyond32BitsIsAboveOrBelowAllLimits) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double number : {4294967296.0, 1e300, infinite}) {
    EXPECT_FALSE(InRange(number, {{L"max", L"2147483647"}}));
    EXPECT_TRUE(InRange(number, {{L"min", L"2147483647"}}));
    EXPECT_FALSE(InRange(-number, {{L"min", L"-2147483648"}}));
    EXPECT_TRUE(InRange(-number, {{L"max", L"-2147483648"}}));
    EXPECT_TRUE(InRange(number, {}));
  }
}

TEST(LiesInNumericRange, NotANumberIsInNoRange) {
  Limits limits{{{L"min", L"4294967296"}}};
  EXPECT_FALSE(LiesInNumericRange(std::nan(""), limits.Reader()));
  EXPECT_THAT(limits.asked, IsEmpty());
  EXPECT_FALSE(InRange(std::nan(""), {}));
}

std::wstring LongList(std::size_t characters) {
  std::wstring list;
  list.reserve(characters);
  while (list.size() < characters) list += L"item,";
  return list;
}

TEST(HostileLists, TenMillionCharactersAreNoMatter) {
  const std::wstring list = LongList(10'000'000);
  EXPECT_FALSE(IsContainedInList(list, L"other"));
  EXPECT_FALSE(BeginsWithFromList(list, L"other"));
  EXPECT_TRUE(IsContainedInList(list + L"other", L"other"));
  const std::wstring commas(10'000'000, L',');
  EXPECT_FALSE(IsContainedInList(commas, L"other"));
  EXPECT_TRUE(BeginsWithFromList(commas, L"other"));
}

TEST(HostileLists, ALongValueIsComparedOnceWithALongItem) {
  const std::wstring value(5'000'000, L'a');
  EXPECT_FALSE(BeginsWithFromList(value.substr(1) + L"b", value));
  EXPECT_TRUE(IsContainedInList(L"x," + value, value));
}

}  // namespace
}  // namespace Zq::Gantry::Security
