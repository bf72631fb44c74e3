#include "security/pattern/pattern.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <thread>
#include <vector>

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;

bool IsValid(const std::wstring& expression) { return Pattern::TryCompile(expression).has_value(); }

bool Matches(const std::wstring& expression, const std::wstring& text) {
  const auto pattern = Pattern::TryCompile(expression);
  return pattern && pattern->Matches(text);
}

std::wstring Repeat(const std::wstring& part, std::size_t times) {
  std::wstring text;
  while (times-- > 0) text += part;
  return text;
}

/// The characters that may make a difference: Latin, line ends, surrogates and the last ones.
bool IsOfInterest(unsigned code) {
  return code < 0x180 || (code >= 0x2020 && code < 0x2030) || (code >= 0x20AB && code < 0x20AE) ||
         (code >= 0xD7FF && code < 0xD802) || code >= 0xFFF0;
}

/// The characters that `expression` matches, as pairs of first and last. One that makes no
/// difference belongs to the range of the character below.
std::vector<unsigned> MatchingRanges(const std::wstring& expression) {
  const auto pattern = Pattern::TryCompile(expression);
  std::vector<unsigned> ranges;
  bool isMatch = false;
  bool wasMatch = false;
  for (unsigned code = 0; code <= 0xFFFF; ++code) {
    const wchar_t character = static_cast<wchar_t>(code);
    if (IsOfInterest(code)) isMatch = pattern && pattern->Matches({&character, 1});
    if (isMatch && !wasMatch) ranges.insert(ranges.end(), {code, code});
    if (isMatch) ranges.back() = code;
    wasMatch = isMatch;
  }
  return ranges;
}

using Codes = std::vector<unsigned>;

TEST(Pattern, MatchesTheWholeTextOnly) {
  EXPECT_TRUE(Matches(L"[a-z]+", L"word"));
  EXPECT_FALSE(Matches(L"[a-z]+", L"word "));
  EXPECT_FALSE(Matches(L"[a-z]+", L" word"));
  EXPECT_FALSE(Matches(L"[a-z]+", L"word\n"));
  EXPECT_TRUE(Matches(L"a|ab", L"ab"));
  EXPECT_TRUE(Matches(L"a??", L"a"));
  EXPECT_FALSE(Matches(L"a", L""));
  EXPECT_TRUE(Matches(L"", L""));
  EXPECT_FALSE(Matches(L"", L"a"));
}

TEST(Pattern, MatchesAlternativesAndEmptyOnes) {
  EXPECT_TRUE(Matches(L"(?:x|y)*z?", L"xyyx"));
  EXPECT_TRUE(Matches(L"|a|", L""));
  EXPECT_TRUE(Matches(L"|a|", L"a"));
  EXPECT_TRUE(Matches(L"()", L""));
  EXPECT_TRUE(Matches(L"(?:)", L""));
  EXPECT_FALSE(Matches(L"x(a|b)y", L"xa"));
}

TEST(Pattern, IsCaseSensitive) {
  EXPECT_FALSE(Matches(L"word", L"Word"));
  EXPECT_FALSE(Matches(L"(a)\\1", L"aA"));
  EXPECT_FALSE(Matches(L"[a-z]", L"A"));
}

TEST(Pattern, TreatsANullCharacterAsPartOfTheText) {
  EXPECT_TRUE(Matches(L"a[^b]b", L"a\0b"s));
  EXPECT_FALSE(Matches(L"a", L"a\0b"s));
  EXPECT_TRUE(Matches(L"a\0b"s, L"a\0b"s));
  EXPECT_TRUE(Matches(L"a\\0b", L"a\0b"s));
}

TEST(Pattern, TreatsLoneSurrogatesAsCharacters) {
  EXPECT_TRUE(Matches(L".\xDFFF.", L"\xD800\xDFFF\xD800"));
  EXPECT_FALSE(Matches(L"[\xD800-\xDBFF]", L"\xDC00"));
  EXPECT_TRUE(Matches(L"\\uD800", L"\xD800"));
}

TEST(Pattern, CountsACharacterAbove16BitsAsTwoUnits) {
  EXPECT_TRUE(Matches(L"..", L"\U0001F600"));
  EXPECT_FALSE(Matches(L".", L"\U0001F600"));
  EXPECT_TRUE(Matches(L"\\uD83D\\uDE00", L"\U0001F600"));
  EXPECT_TRUE(Matches(L"\U0001F600", L"\U0001F600"));
}

TEST(PatternQuantifier, MatchesFromLeastToMostTimes) {
  struct Row {
    const wchar_t* expression;
    std::size_t least;
    std::size_t most;
  };
  constexpr std::size_t kNoLimit = 6;
  for (const auto& [expression, least, most] :
       {Row{L"a*", 0, kNoLimit}, Row{L"a+", 1, kNoLimit}, Row{L"a?", 0, 1}, Row{L"a{3}", 3, 3},
        Row{L"a{2,}", 2, kNoLimit}, Row{L"a{2,4}", 2, 4}, Row{L"a{3,3}", 3, 3}, Row{L"a{0}", 0, 0},
        Row{L"a*?", 0, kNoLimit}, Row{L"a+?", 1, kNoLimit}, Row{L"a??", 0, 1}, Row{L"a{3}?", 3, 3},
        Row{L"a{2,}?", 2, kNoLimit}, Row{L"(?:a){2,4}?", 2, 4}}) {
    for (std::size_t count = 0; count <= kNoLimit; ++count) {
      EXPECT_EQ(Matches(expression, std::wstring(count, L'a')), count >= least && count <= most)
          << testing::PrintToString(std::wstring(expression)) << count;
    }
  }
}

TEST(PatternQuantifier, LazyAndGreedyGroupsCaptureDifferently) {
  // Greedy, the group takes "aa" at first, lazy only "a"; the rest decides between them.
  EXPECT_TRUE(Matches(L"(a+)b\\1", L"aabaa"));
  EXPECT_FALSE(Matches(L"(?=(a+?))\\1b", L"aab"));
  EXPECT_TRUE(Matches(L"(?=(a+))\\1b", L"aab"));
}

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

// The list of docs/rules.md. If the library mends one, its row fails and goes.
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

// Expressions that a rule has reason to be.

TEST(OrdinaryPattern, ListsOfNumbersMatch) {
  EXPECT_TRUE(Matches(L"\\d+(?:,\\d+){0,499}", L"1,2,3"));
  EXPECT_TRUE(Matches(L"\\d+(?:,\\d+){0,499}", L"1" + Repeat(L",23", 499)));
  EXPECT_FALSE(Matches(L"\\d+(?:,\\d+){0,499}", L"1" + Repeat(L",23", 500)));
}

TEST(OrdinaryPattern, HostNamesMatch) {
  const std::wstring host = L"(?:[a-z0-9](?:[a-z0-9-]{0,61}[a-z0-9])?\\.){1,126}[a-z]{2,63}";
  EXPECT_TRUE(Matches(host, L"www.example.com"));
  EXPECT_FALSE(Matches(host, L"www.-example.com"));
  EXPECT_TRUE(Matches(host, Repeat(L"a.", 126) + L"de"));
  EXPECT_FALSE(Matches(host, Repeat(L"a.", 127) + L"de"));
}

TEST(OrdinaryPattern, ListsOfThousandsOfWordsMatchEachWord) {
  std::vector<std::wstring> words;
  for (int i = 1000; i < 4000; ++i) words.push_back(L"word" + std::to_wstring(i));
  std::wstring list = words.front();
  for (std::size_t i = 1; i < words.size(); ++i) list += L"|" + words[i];
  const auto pattern = Pattern::TryCompile(list);
  ASSERT_TRUE(pattern);
  for (const std::wstring& word : words) EXPECT_TRUE(pattern->Matches(word));
  EXPECT_FALSE(pattern->Matches(L"word4000"));
  EXPECT_FALSE(pattern->Matches(L"word100"));

  list = words.front();
  for (std::size_t i = 1; i < 1000; ++i) list += L"|" + words[i];
  const std::wstring hundredWords = Repeat(L"word1999,", 99) + L"word1999";
  EXPECT_TRUE(Matches(L"(?:" + list + L")(?:,(?:" + list + L"))*", hundredWords));
}

TEST(OrdinaryPattern, CountsOfThousandsAreExact) {
  struct Row {
    const wchar_t* expression;
    std::size_t most;
  };
  for (const auto& [expression, most] :
       {Row{L".{0,10000}", 10'000}, Row{L"[^<>]{0,9000}", 9000}, Row{L"\\w{1,65535}", 65'535},
        Row{L"(?:[a-z]){0,2000}", 2000}}) {
    EXPECT_TRUE(Matches(expression, L"abc"));
    EXPECT_TRUE(Matches(expression, std::wstring(most, L'a')));
    EXPECT_FALSE(Matches(expression, std::wstring(most + 1, L'a')));
  }
  EXPECT_TRUE(Matches(L"[^<>]{0,9000}", std::wstring(6000, L'a')));
}

TEST(OrdinaryPattern, ReferencesCompareAMillionCharacters) {
  const std::wstring letters(500'000, L'a');
  EXPECT_TRUE(Matches(L"(['\"])[^'\"]*\\1", L"'" + letters + L"'"));
  EXPECT_FALSE(Matches(L"(['\"])[^'\"]*\\1", L"'" + letters + L"\""));
  EXPECT_TRUE(Matches(L"(.*)\\1", letters + letters));
}

TEST(OrdinaryPattern, LongTextsMatch) {
  EXPECT_TRUE(Matches(L"[a-z]+", std::wstring(5'000'000, L'a')));
  EXPECT_FALSE(Matches(L"[a-z]+", std::wstring(5'000'000, L'a') + L"1"));
  EXPECT_TRUE(Matches(L"(?:(?!--).)*", std::wstring(100'000, L'a')));
  EXPECT_TRUE(Matches(L"(?=.*\\d)(?=.*[a-z])[\\w ]{8,}", std::wstring(100'000, L'a') + L"1"));
  EXPECT_TRUE(Matches(L"(a|b)*", std::wstring(100'000, L'a')));
  EXPECT_TRUE(Matches(L"\\w+(?:,\\w+)*", L"abc" + Repeat(L",abc", 50'000)));
}

// Limits.

TEST(PatternLimit, AnExpressionLongerThanTheLimitIsInvalid) {
  const std::wstring inner(kMostExpressionChars - 2, L'a');
  EXPECT_TRUE(Matches(L"[" + inner + L"]", L"a"));
  EXPECT_FALSE(IsValid(L"[" + inner + L"a]"));
}

TEST(PatternLimit, GroupsNestedDeeperThanTheLimitAreInvalid) {
  const std::wstring open(kDeepestGroups, L'(');
  const std::wstring close(kDeepestGroups, L')');
  EXPECT_TRUE(Matches(open + L"a" + close, L"a"));
  EXPECT_FALSE(IsValid(L"(" + open + L"a" + close + L")"));
}

TEST(PatternLimit, ACountAbove65535IsInvalid) {
  EXPECT_TRUE(IsValid(L"a{65535}"));
  EXPECT_FALSE(IsValid(L"a{65536}"));
  EXPECT_FALSE(IsValid(L"a{0,65536}"));
  EXPECT_FALSE(IsValid(L"a{4294967297}"));
}

TEST(PatternLimit, AReferenceToAGroupAfterThe250thIsInvalid) {
  EXPECT_TRUE(Matches(Repeat(L"()", 249) + L"(a)\\250", L"aa"));
  EXPECT_FALSE(Matches(Repeat(L"()", 249) + L"(a)\\250", L"ab"));
  EXPECT_FALSE(IsValid(Repeat(L"()", 251) + L"\\251"));
}

TEST(PatternLimit, AnExpressionTooLargeForTheEngineIsInvalid) {
  EXPECT_FALSE(IsValid(L"((a{1000}){1000}){1000}"));
  EXPECT_FALSE(IsValid(L"(?:(?:(?:){1000}){1000}){1000}"));
  EXPECT_FALSE(IsValid(std::wstring(40'000, L'a')));
  EXPECT_TRUE(Matches(std::wstring(20'000, L'a'), std::wstring(20'000, L'a')));
}

TEST(PatternLimit, AClassOfManyRangesShortensTheTextThatCanMatch) {
  // 4,000 ranges: a character costs 1 + 4,000 / 4, and 200,000,000 / 1,001 is 199,800 and a rest.
  std::wstring scattered = L"[";
  for (int i = 0; i < 4000; ++i) scattered += static_cast<wchar_t>(0x100 + 2 * i);
  const auto pattern = Pattern::TryCompile(scattered + L"]*");
  ASSERT_TRUE(pattern);
  EXPECT_TRUE(pattern->Matches(std::wstring(199'800, L'\x100')));
  EXPECT_FALSE(pattern->Matches(std::wstring(199'801, L'\x100')));
}

TEST(PatternLimit, TooManyBacktrackingPointsEndTheMatch) {
  // The group goes round in 2 to the power of 19 and of 24 ways.
  EXPECT_TRUE(Matches(L"(?:a|a)*b|a*", std::wstring(19, L'a')));
  EXPECT_FALSE(Matches(L"(?:a|a)*b|a*", std::wstring(24, L'a')));
}

TEST(PatternLimit, ManyGroupsLowerTheLimitOfBacktrackingPoints) {
  const std::wstring groups = Repeat(L"()", 80);
  EXPECT_TRUE(Matches(groups + L"(?:a|a)*b|a*", std::wstring(15, L'a')));
  EXPECT_FALSE(Matches(groups + L"(?:a|a)*b|a*", std::wstring(19, L'a')));
}

TEST(PatternLimit, PassingTooManyCharactersEndsTheMatch) {
  // From each place the second part goes to the end and back: the square of the length.
  EXPECT_TRUE(Matches(L".*[^x]*x|a*", std::wstring(13'000, L'a')));
  EXPECT_FALSE(Matches(L".*[^x]*x|a*", std::wstring(15'000, L'a')));
}

TEST(PatternLimit, PassedCharactersIncludeThoseThatReferencesCompare) {
  // Each length up to half the text is compared, at an eighth: a 64th of the square of the length.
  EXPECT_TRUE(Matches(L"(a.*)\\1x|ab*", L"a" + std::wstring(100'000, L'b')));
  EXPECT_FALSE(Matches(L"(a.*)\\1x|ab*", L"a" + std::wstring(120'000, L'b')));
}

TEST(PatternLimit, TooMuchMemoryEndsTheMatch) {
  EXPECT_FALSE(Matches(L"(a|b)*", std::wstring(1'000'000, L'a')));
}

TEST(Pattern, MatchesOnManyThreadsAtOnce) {
  const auto pattern = Pattern::TryCompile(L"([a-z]+)[0-9]+\\1");
  ASSERT_TRUE(pattern);
  std::vector<int> wrong(8, 0);
  {
    std::vector<std::jthread> threads;
    for (int& count : wrong) {
      threads.emplace_back([&pattern, &count] {
        for (int round = 0; round < 200; ++round) {
          const std::wstring letters(static_cast<std::size_t>(1 + round % 50), L'a');
          if (!pattern->Matches(letters + L"7" + letters)) ++count;
          if (pattern->Matches(letters + L"7" + letters + L"a")) ++count;
        }
      });
    }
  }
  for (const int count : wrong) EXPECT_EQ(count, 0);
}

}  // namespace
}  // namespace Zq::Gantry::Security
