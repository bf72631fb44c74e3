#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <utility>

#include "security/access/literal_rules.h"
#include "security/access/rule_judges.h"
#include "security/trust/path_rules.h"

// Compares the judges of lists with the literal form of their rules.
namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using namespace TestSupport;

constexpr int kCases = 50'000;

/// Letters in both cases, letters whose lower case is far away or has another length in other
/// rules (sharp s, dotted and dotless i, the Kelvin and Angstrom signs), surrogates, nulls, and the
/// signs of paths.
constexpr std::wstring_view kCharacters =
    L"aAbBiIkKsSzZ@[`{19_..\\/:%(|)\0\u0080\u00C4\u00E4\u00DF\u1E9E\u0130\u0131\u017F\u212A\u212B"
    L"\u00E5\u03A3\u03C3\u03C2\u0416\u0436\u01C4\u01C5\xD835\xDC00\xDFFF\xFF21\xFF41\xFFFE\xFFFF";

class RandomTexts {
 public:
  std::size_t Below(std::size_t limit) { return random_() % limit; }

  /// Up to `most` characters of `kCharacters`, of 3 kinds at most, so that texts often agree.
  std::wstring Text(std::size_t most) {
    std::wstring kinds;
    for (int i = 0; i < 3; ++i) kinds += kCharacters[Below(kCharacters.size())];
    std::wstring text(Below(most + 1), L'\0');
    for (wchar_t& character : text) character = kinds[Below(kinds.size())];
    return text;
  }

  std::wstring Value() {
    const std::wstring beginnings[] = {L"",  L"c:",       L"C:\\", L"\\",    L"http:", L"https:",
                                       L"%", L"%a(b|c)%", L"x\0"s, L"C:\0"s, L"%\0%"s, L"\0:"s};
    return beginnings[Below(std::size(beginnings))] + Text(8);
  }

  /// A list of which about every third contains `value` or a beginning of it.
  std::wstring List(const std::wstring& value) {
    std::wstring list;
    for (std::size_t items = Below(9); items > 0; --items) {
      list += Below(6) == 0 ? InOtherCase(value.substr(0, Below(value.size() + 1))) : Text(4);
      if (items > 1 || Below(3) == 0) list += L',';
      if (Below(40) == 0) list += L',';
    }
    return list;
  }

 private:
  std::wstring InOtherCase(std::wstring text) {
    for (wchar_t& character : text) {
      const auto code = static_cast<std::wint_t>(character);
      if (Below(3) == 0) character = static_cast<wchar_t>(std::towupper(code));
      if (Below(3) == 0) character = static_cast<wchar_t>(std::towlower(code));
    }
    return text;
  }

  std::mt19937 random_{20'260'101};
};

TEST(RuleJudges, AgreeWithTheLiteralRulesOnRandomListsAndValues) {
  RandomTexts texts;
  int contained = 0;
  int begun = 0;
  int climbing = 0;
  for (int i = 0; i < kCases && !testing::Test::HasFailure(); ++i) {
    const std::wstring value = texts.Value();
    const std::wstring list = texts.List(value);
    const auto inputs = [&] { return testing::PrintToString(std::pair(list, value)); };
    const auto [isClimbing, isContained, isBegun] = LiteralAnswers(list, value);
    EXPECT_EQ(IsContainedInList(list, value), isContained) << inputs();
    EXPECT_EQ(BeginsWithFromList(list, value), isBegun) << inputs();
    EXPECT_EQ(IsClimbingPath(value), isClimbing) << inputs();
    EXPECT_EQ(HasPathShape(value), LiteralHasPathShape(value)) << inputs();
    contained += isContained;
    begun += isBegun;
    climbing += isClimbing;
  }
  // Neither answer is rare.
  EXPECT_GT(contained, kCases / 50);
  EXPECT_GT(begun, kCases / 5);
  EXPECT_LT(begun, kCases / 5 * 4);
  EXPECT_GT(climbing, kCases / 100);
}

TEST(HasPrefix, AgreesWithFoldingEveryPairOfAnAsciiAndAnyCharacter) {
  int folded = 0;
  for (wchar_t ascii = 0; ascii < 0x80; ++ascii) {
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
      const auto other = static_cast<wchar_t>(code);
      const std::wstring_view first(&ascii, 1);
      const std::wstring_view second(&other, 1);
      const bool isEqual = LiteralHasPrefix(first, second);
      if (HasPrefix(second, first) != isEqual) FAIL() << static_cast<int>(ascii) << ", " << code;
      if (isEqual && ascii != other) ++folded;
    }
  }
  EXPECT_EQ(folded, 52);  // each ASCII letter and its other case
}

}  // namespace
}  // namespace Zq::Gantry::Security
