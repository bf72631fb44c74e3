#include "security/pattern/pattern.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <vector>

#include "security/pattern/pattern_calls.h"

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using TestSupport::IsValid;
using TestSupport::Matches;

/// The characters that expressions here distinguish: Latin, line ends, surrogates and the last
/// ones.
bool IsTried(unsigned code) {
  return code < 0x180 || (code >= 0x2020 && code < 0x2030) || (code >= 0x20AB && code < 0x20AE) ||
         (code >= 0xD7FF && code < 0xD802) || code >= 0xFFF0;
}

/// The characters that `expression` matches, as pairs of first and last. A character that is not
/// tried belongs to the range of the last tried one before it.
std::vector<unsigned> MatchingRanges(const std::wstring& expression) {
  const auto pattern = Pattern::TryCompile(expression);
  std::vector<unsigned> ranges;
  bool isMatch = false;
  bool wasMatch = false;
  for (unsigned code = 0; code <= 0xFFFF; ++code) {
    const wchar_t character = static_cast<wchar_t>(code);
    if (IsTried(code)) isMatch = pattern && pattern->Matches({&character, 1});
    if (isMatch && !wasMatch) ranges.insert(ranges.end(), {code, code});
    if (isMatch) ranges.back() = code;
    wasMatch = isMatch;
  }
  return ranges;
}

using Codes = std::vector<unsigned>;

TEST(PatternGrammar, EscapesMatchTheirCharacters) {
  struct Row {
    const wchar_t* expression;
    wchar_t character;
  };
  for (const auto& [expression, character] : {Row{L"\\f", L'\f'},      Row{L"\\n", L'\n'},
                                              Row{L"\\r", L'\r'},      Row{L"\\t", L'\t'},
                                              Row{L"\\v", L'\v'},      Row{L"\\0", L'\0'},
                                              Row{L"\\x41", L'A'},     Row{L"\\u20aC", L'\x20AC'},
                                              Row{L"\\cJ", L'\n'},     Row{L"\\cj", L'\n'},
                                              Row{L"\\cZ", L'\x1A'},   Row{L"[\\b]", L'\b'},
                                              Row{L"[\\cA]", L'\x01'}, Row{L"[\\x41]", L'A'},
                                              Row{L"[\\0]", L'\0'},    Row{L"\\.", L'.'},
                                              Row{L"\\\\", L'\\'},     Row{L"\\/", L'/'},
                                              Row{L"]", L']'},         Row{L"}", L'}'},
                                              Row{L"[[]", L'['},       Row{L"[\\]]", L']'},
                                              Row{L"[.]", L'.'}}) {
    const unsigned code = static_cast<unsigned>(character);
    EXPECT_EQ(MatchingRanges(expression), (Codes{code, code}))
        << testing::PrintToString(std::wstring(expression));
  }
}

TEST(PatternGrammar, AnEscapedLetterWithoutMeaningMatchesItself) {
  for (const wchar_t letter : std::wstring(L"aeghijklmopqyzACEFGHIJKLMNOPQRTUVXYZ_")) {
    const std::wstring expression = L"\\"s + letter;
    EXPECT_TRUE(Matches(expression, std::wstring(1, letter))) << testing::PrintToString(letter);
    EXPECT_FALSE(Matches(expression, L"")) << testing::PrintToString(letter);
    EXPECT_FALSE(Matches(expression, L"0")) << testing::PrintToString(letter);
  }
  EXPECT_TRUE(Matches(L"\\Qa.\\E", L"QabE"));
  EXPECT_TRUE(Matches(L"(a)\\g{2}", L"agg"));
  EXPECT_FALSE(Matches(L"a\\Kb", L"ab"));
}

TEST(PatternGrammar, ADotMatchesEveryCharacterButTheFourLineEnds) {
  EXPECT_EQ(MatchingRanges(L"."), (Codes{0, 9, 0xB, 0xC, 0xE, 0x2027, 0x202A, 0xFFFF}));
}

TEST(PatternGrammar, NamedClassesHoldTheCharactersOfTheCLocale) {
  struct Row {
    const wchar_t* name;
    Codes codes;
  };
  for (const auto& [name, codes] :
       {Row{L"alnum", {'0', '9', 'A', 'Z', 'a', 'z'}}, Row{L"alpha", {'A', 'Z', 'a', 'z'}},
        Row{L"blank", {9, 9, 32, 32}}, Row{L"cntrl", {0, 31, 127, 127}}, Row{L"digit", {'0', '9'}},
        Row{L"graph", {33, 126}}, Row{L"lower", {'a', 'z'}}, Row{L"print", {32, 126}},
        Row{L"punct", {33, 47, 58, 64, 91, 96, 123, 126}}, Row{L"space", {9, 13, 32, 32}},
        Row{L"upper", {'A', 'Z'}}, Row{L"xdigit", {'0', '9', 'A', 'F', 'a', 'f'}},
        Row{L"d", {'0', '9'}}, Row{L"s", {9, 13, 32, 32}},
        Row{L"w", {'0', '9', 'A', 'Z', '_', '_', 'a', 'z'}}, Row{L"ALPHA", {'A', 'Z', 'a', 'z'}}}) {
    EXPECT_EQ(MatchingRanges(L"[[:"s + name + L":]]"), codes)
        << testing::PrintToString(std::wstring(name));
  }
}

TEST(PatternGrammar, LetteredClassesMatchTheirCharactersAndComplements) {
  EXPECT_EQ(MatchingRanges(L"\\d"), (Codes{'0', '9'}));
  EXPECT_EQ(MatchingRanges(L"\\D"), (Codes{0, '0' - 1, '9' + 1, 0xFFFF}));
  EXPECT_EQ(MatchingRanges(L"\\s"), (Codes{9, 13, 32, 32}));
  EXPECT_EQ(MatchingRanges(L"[^\\S]"), (Codes{9, 13, 32, 32}));
  EXPECT_EQ(MatchingRanges(L"\\w"), (Codes{'0', '9', 'A', 'Z', '_', '_', 'a', 'z'}));
  EXPECT_EQ(MatchingRanges(L"[\\W_]"),
            (Codes{0, '0' - 1, '9' + 1, 'A' - 1, 'Z' + 1, 'a' - 1, 'z' + 1, 0xFFFF}));
  EXPECT_EQ(MatchingRanges(L"[\\w\\W]"), (Codes{0, 0xFFFF}));
}

TEST(PatternGrammar, CollatingElementsAndEquivalenceClassesMatchTheirCharacters) {
  EXPECT_EQ(MatchingRanges(L"[[.hyphen.]]"), (Codes{'-', '-'}));
  EXPECT_EQ(MatchingRanges(L"[[.-.]]"), (Codes{'-', '-'}));
  EXPECT_EQ(MatchingRanges(L"[[.NUL.]]"), (Codes{0, 0}));
  EXPECT_EQ(MatchingRanges(L"[[.DEL.]]"), (Codes{127, 127}));
  EXPECT_EQ(MatchingRanges(L"[[.a.]-[.c.]]"), (Codes{'a', 'c'}));
  EXPECT_EQ(MatchingRanges(L"[[=a=]]"), (Codes{'A', 'A', 'a', 'a'}));
  EXPECT_EQ(MatchingRanges(L"[[=Z=]]"), (Codes{'Z', 'Z', 'z', 'z'}));
  EXPECT_EQ(MatchingRanges(L"[[=one=]]"), (Codes{'1', '1'}));
  EXPECT_EQ(MatchingRanges(L"[[=@=]]"), (Codes{'@', '@'}));
}

TEST(PatternGrammar, EmptyClassMatchesNothingAndItsComplementEverything) {
  EXPECT_EQ(MatchingRanges(L"[]"), Codes{});
  EXPECT_EQ(MatchingRanges(L"[^]"), (Codes{0, 0xFFFF}));
  EXPECT_TRUE(Matches(L"a[]?b", L"ab"));
  EXPECT_TRUE(Matches(L"[]*", L""));
  EXPECT_FALSE(Matches(L"[]+", L""));
}

TEST(PatternGrammar, ADashInAClassIsLiteralWhenItJoinsNothing) {
  for (const wchar_t* expression : {L"[-]", L"[--]", L"[---]", L"[\\-]"}) {
    EXPECT_EQ(MatchingRanges(expression), (Codes{'-', '-'}));
  }
  EXPECT_EQ(MatchingRanges(L"[a-]"), (Codes{'-', '-', 'a', 'a'}));
  EXPECT_EQ(MatchingRanges(L"[a-c-e]"), (Codes{'-', '-', 'a', 'c', 'e', 'e'}));
  EXPECT_EQ(MatchingRanges(L"[+--]"), (Codes{'+', '-'}));
  EXPECT_EQ(MatchingRanges(L"[\\d-]"), (Codes{'-', '-', '0', '9'}));
}

TEST(PatternGrammar, AnchorsAndWordBoundariesReferToTheWholeText) {
  EXPECT_TRUE(Matches(L"^\\d{2,4}$", L"123"));
  EXPECT_FALSE(Matches(L"a\n^b", L"a\nb"));
  EXPECT_FALSE(Matches(L"a$\nb", L"a\nb"));
  EXPECT_FALSE(Matches(L"a$\n", L"a\n"));
  EXPECT_TRUE(Matches(L"\\bword\\b.*", L"word end"));
  EXPECT_FALSE(Matches(L"\\B", L"a"));
  EXPECT_TRUE(Matches(L"a\\Ba", L"aa"));
  EXPECT_TRUE(Matches(L"\\B", L""));
}

TEST(PatternGrammar, ALookAheadSeesTheTextBeforeIt) {
  EXPECT_FALSE(Matches(L"foo(?=\\bbar)bar", L"foobar"));
  EXPECT_FALSE(Matches(L"a(?=^b)b", L"ab"));
  EXPECT_TRUE(Matches(L"foo(?=\\Bbar)bar", L"foobar"));
  EXPECT_TRUE(Matches(L"foo(?!\\bbar)bar", L"foobar"));
  EXPECT_TRUE(Matches(L"(?=^a)a", L"a"));
  EXPECT_TRUE(Matches(L"(?=.*\\d)(?!.*!)[\\w!]+", L"abc1"));
  EXPECT_FALSE(Matches(L"(?=.*\\d)(?!.*!)[\\w!]+", L"abc1!"));
}

TEST(PatternGrammar, AReferenceToAnUnmatchedGroupMatchesTheEmptyText) {
  EXPECT_TRUE(Matches(L"(\\w+)-\\1", L"ab-ab"));
  EXPECT_FALSE(Matches(L"(\\w+)-\\1", L"ab-ac"));
  EXPECT_TRUE(Matches(L"(?:(a)|b)\\1c", L"bc"));
  EXPECT_FALSE(Matches(L"(?:(a)|b)\\1c", L"ac"));
  EXPECT_TRUE(Matches(L"(?:(a)|b)\\1c", L"aac"));
  EXPECT_TRUE(Matches(L"(?!(a))b\\1", L"b"));
  EXPECT_TRUE(Matches(L"(a)(b)(c)(d)(e)(f)(g)(h)(i)(j)\\10", L"abcdefghijj"));
}

TEST(PatternGrammar, AGroupKeepsItsMatchOfAnEarlierRound) {
  EXPECT_TRUE(Matches(L"(?:(a)|b)*\\1", L"aba"));
  EXPECT_FALSE(Matches(L"(?:(a)|b){2}\\1", L"ab"));
}

TEST(PatternGrammar, ExpressionsOutsideTheGrammarAreInvalid) {
  for (const wchar_t* expression : {L"(",
                                    L")",
                                    L"(a",
                                    L"a)",
                                    L"[",
                                    L"[a",
                                    L"[^",
                                    L"[a-",
                                    L"[z-a]",
                                    L"[\\w-a]",
                                    L"[a-\\d]",
                                    L"[[:alpha:]-z]",
                                    L"[[=a=]-z]",
                                    L"[[:no:]]",
                                    L"[[:^alpha:]]",
                                    L"[[:word:]]",
                                    L"[[:ascii:]]",
                                    L"[[:alpha]]",
                                    L"[[.no.]]",
                                    L"[[.a]]",
                                    L"[[=no=]]",
                                    L"[[..]]",
                                    L"[\\B]",
                                    L"[\\1]",
                                    L"*",
                                    L"+a",
                                    L"?",
                                    L"{2}",
                                    L"{",
                                    L"a{",
                                    L"a{}",
                                    L"a{x}",
                                    L"a{,3}",
                                    L"a{2",
                                    L"a{2,",
                                    L"a{2,1}",
                                    L"a{2,1x}",
                                    L"a{-1}",
                                    L"a{1 }",
                                    L"^*",
                                    L"$?",
                                    L"\\b+",
                                    L"\\B{2}",
                                    L"(?=a)*",
                                    L"(?!a){2}",
                                    L"(*)",
                                    L"(|*)",
                                    L"\\",
                                    L"a\\",
                                    L"\\c",
                                    L"\\c1",
                                    L"[\\c]",
                                    L"\\x4",
                                    L"\\x{41}",
                                    L"\\xg1",
                                    L"\\u004",
                                    L"\\u{41}",
                                    L"\\01",
                                    L"[\\00]",
                                    L"\\1",
                                    L"(a)\\2",
                                    L"(a\\1)",
                                    L"\\1(a)",
                                    L"(?:a)\\1",
                                    L"\\99999999999999999999"}) {
    EXPECT_FALSE(IsValid(expression)) << testing::PrintToString(std::wstring(expression));
  }
}

TEST(PatternGrammar, SyntaxOfPcre2BeyondTheGrammarIsInvalid) {
  for (const wchar_t* expression : {L"a++",
                                    L"a*+",
                                    L"a?+",
                                    L"a{2}+",
                                    L"a**",
                                    L"a{2}{3}",
                                    L"a+*",
                                    L"a*??",
                                    L"(?<n>a)",
                                    L"(?'n'a)",
                                    L"(?P<n>a)",
                                    L"(?P=n)",
                                    L"(?P>n)",
                                    L"(?>a)",
                                    L"(?<=a)b",
                                    L"(?<!a)b",
                                    L"(*ACCEPT)",
                                    L"(*UTF)a",
                                    L"(*LIMIT_MATCH=1)a",
                                    L"(*pla:a)",
                                    L"(?R)",
                                    L"(?0)",
                                    L"(a)(?1)",
                                    L"(?+1)(a)",
                                    L"(a)(?-1)",
                                    L"(?&n)",
                                    L"(?(1)a|b)",
                                    L"(?(?=a)a|b)",
                                    L"(?(DEFINE)a)",
                                    L"(?i)a",
                                    L"(?i:a)",
                                    L"(?-i)a",
                                    L"(?^)a",
                                    L"(?x) a",
                                    L"(?#note)",
                                    L"(?|a|b)",
                                    L"(?C)",
                                    L"(?C1)a",
                                    L"(?C\"x\")",
                                    L"\\p{L}",
                                    L"\\P{L}",
                                    L"\\N{U+41}",
                                    L"(?<n>a)\\k{n}",
                                    L"\\Qa**\\E"}) {
    EXPECT_FALSE(IsValid(expression)) << testing::PrintToString(std::wstring(expression));
  }
}

#ifdef __GLIBCXX__

struct Difference {
  const wchar_t* expression;
  std::wstring text;
  bool ours;
  bool theirs;
};

bool StandardLibraryMatches(const std::wstring& expression, const std::wstring& text) {
  try {
    return std::regex_match(text, std::wregex(expression));
  } catch (const std::regex_error&) {
    return false;
  }
}

// The list of docs/rules.md. If a later library corrects one, its row fails and must be removed.
TEST(PatternGrammar, DiffersFromGccsStandardLibraryAsDocumented) {
  for (const auto& [expression, text, ours, theirs] :
       {Difference{L"foo(?=\\bbar)bar", L"foobar", false, true},
        Difference{L"a(?=^b)b", L"ab", false, true}, Difference{L"a(?=\\Bb)b", L"ab", true, false},
        Difference{L"(?:(a)|b)\\1", L"b", true, false}, Difference{L"\\cJ", L"\n", true, false},
        Difference{L"\\cJ", L"J", false, true}, Difference{L"\\c1", L"1", false, true},
        Difference{L"a+*", L"aa", false, true}, Difference{L"\\01", L"\0001"s, false, true},
        Difference{L"[[.-.]]", L"-", true, false}, Difference{L"[[=1=]]", L"1", true, false},
        Difference{L"[a-[.c.]]", L"b", true, false}}) {
    const std::wstring shown = expression;
    EXPECT_EQ(Matches(expression, text), ours) << testing::PrintToString(shown);
    EXPECT_EQ(StandardLibraryMatches(expression, text), theirs) << testing::PrintToString(shown);
  }
}

#endif

}  // namespace
}  // namespace Zq::Gantry::Security
