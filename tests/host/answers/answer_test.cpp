// Reading the results of commands: statuses, series, rankings and their characters.

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "answers/answer.h"
#include "answers/command_facts.h"

using namespace WattleafHost;

namespace {

constexpr int kUnknown = 0x20000001;
constexpr int kNone = 0x20000002;

const char* const kHours =
    R"({"Range":[0.0,3.5],"Value":[{"Time":"2:00","Value":0.0},{"Time":"3:00","Value":3.5}]})";

const char* const kApps = R"([{"Name":"Oak","Icon":"","Value":0.5}])";

}  // namespace

TEST(HostCommandFacts, EveryCommandHasATitleAndNoOtherNumberDoes) {
  for (unsigned int number = 1; number <= 10; ++number) {
    const CommandFacts* facts = FindCommand(number);
    ASSERT_NE(facts, nullptr) << number;
    EXPECT_EQ(NumberOf(facts->command), number);
    EXPECT_EQ(TitleOf(number), facts->title);
    EXPECT_NE(facts->title, "") << number;
    EXPECT_EQ(!facts->chartTitle.empty(), number >= 4 && number <= 6) << number;
  }
  EXPECT_EQ(FindCommand(0), nullptr);
  EXPECT_EQ(FindCommand(11), nullptr);
  EXPECT_EQ(TitleOf(0), "unknown command");
  EXPECT_EQ(TitleOf(11), "unknown command");
}

TEST(HostCommandFacts, CommandsThatReadTheLedgerAre1And3And5And6) {
  for (const CommandFacts& facts : kCommandFacts) {
    const unsigned int number = NumberOf(facts.command);
    EXPECT_EQ(facts.readsLedger, number == 1 || number == 3 || number == 5 || number == 6)
        << number;
  }
}

TEST(HostCommandFacts, CommandsThatDoNotWaitForAPassAre8And10) {
  for (const CommandFacts& facts : kCommandFacts) {
    const unsigned int number = NumberOf(facts.command);
    EXPECT_EQ(facts.waitsForPass, number != 8 && number != 10) << number;
  }
}

TEST(HostAnswer, StatusTextIsZeroOrHex) {
  EXPECT_EQ(StatusText(0), "0");
  EXPECT_EQ(StatusText(kUnknown), "0x20000001");
  EXPECT_EQ(StatusText(-1), "0xffffffff");
}

TEST(HostAnswer, StatusMeaningIsInWords) {
  EXPECT_EQ(StatusMeaning(MakeAnswer(99, kUnknown, {})), "unknown command");
  EXPECT_EQ(StatusMeaning(MakeAnswer(4, kNone, {})), "no result");
  EXPECT_EQ(StatusMeaning(MakeAnswer(2, kNone, {})), "no readable store");
  EXPECT_EQ(StatusMeaning(MakeAnswer(9, kNone, {})), "no result");
  EXPECT_EQ(StatusMeaning(MakeAnswer(4, 5, {})), "unknown status");
}

TEST(HostAnswer, HasAResultWithStatusZeroOnly) {
  for (unsigned int number = 1; number <= 10; ++number) {
    EXPECT_TRUE(HasResult(MakeAnswer(number, 0, "0.000000"))) << number;
    EXPECT_FALSE(HasResult(MakeAnswer(number, kNone, {}))) << number;
    EXPECT_FALSE(HasResult(MakeAnswer(number, kUnknown, {}))) << number;
  }
}

TEST(HostAnswer, HasASeriesForCommands4To6Only) {
  for (unsigned int number = 1; number <= 11; ++number) {
    const Answer answer = MakeAnswer(number, 0, kHours);
    EXPECT_EQ(std::holds_alternative<Series>(answer.value), number >= 4 && number <= 6) << number;
    EXPECT_EQ(answer.text, kHours);
  }
}

TEST(HostAnswer, HasARankingForCommand2Only) {
  for (unsigned int number = 1; number <= 11; ++number) {
    const Answer answer = MakeAnswer(number, 0, kApps);
    EXPECT_EQ(std::holds_alternative<Ranking>(answer.value), number == 2) << number;
  }
}

TEST(HostAnswer, HasNoValueWithAnotherStatusOrForATextOfAnotherForm) {
  for (const Answer& answer :
       {MakeAnswer(2, kNone, {}), MakeAnswer(4, kNone, kHours), MakeAnswer(2, kNone, kApps),
        MakeAnswer(2, 0, kHours), MakeAnswer(4, 0, kApps), MakeAnswer(5, 0, "true")}) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(answer.value))
        << answer.number << " " << answer.text;
  }
}

TEST(HostResultText, NarrowsWidenedBytesOfUtf8) {
  // The bytes C3 A4 of U+00E4, widened by sign extension.
  const std::wstring widened = {L'a', static_cast<wchar_t>(0xFFC3), static_cast<wchar_t>(0xFFA4)};
  EXPECT_EQ(ResultToUtf8(1, widened), "a\xC3\xA4");
}

TEST(HostResultText, ConvertsATextOfOtherCharacters) {
  EXPECT_EQ(ResultToUtf8(1, L"\u00E4"), "\xC3\xA4");
  // As bytes these would be UTF-8 for U+00E4.
  EXPECT_EQ(ResultToUtf8(1, L"\u00C3\u00A4"), "\xC3\x83\xC2\xA4");
  // U+FF43 is below the widened bytes.
  EXPECT_EQ(ResultToUtf8(1, L"\uFF43"), "\xEF\xBD\x83");
  // U+FFC3 and U+FF84 narrow to C3 84; U+0142 is not a widened byte.
  EXPECT_EQ(ResultToUtf8(1, L"\uFFC3\uFF84\u0142"), "\xEF\xBF\x83\xEF\xBE\x84\xC5\x82");
}

TEST(HostResultText, ConvertsWidenedBytesThatAreNotUtf8) {
  // C3 alone begins a character that does not end.
  EXPECT_EQ(ResultToUtf8(1, L"\uFFC3"), "\xEF\xBF\x83");
}

TEST(HostResultText, ConvertsEveryTextOfCommand2) {
  const std::wstring text = {static_cast<wchar_t>(0xFFC3), static_cast<wchar_t>(0xFFA4)};
  EXPECT_EQ(ResultToUtf8(2, text), "\xEF\xBF\x83\xEF\xBE\xA4");
}

TEST(HostSeries, ReadsRangeLabelsAndValuesInOrder) {
  const auto series = TryReadSeries(
      R"({"Range":[0.0,3.5],"Value":[{"Time":"2:00","Value":0.0},{"Time":"3:00","Value":3.5}]})");
  ASSERT_TRUE(series.has_value());
  EXPECT_EQ(series->low, 0.0);
  EXPECT_EQ(series->high, 3.5);
  ASSERT_EQ(series->entries.size(), 2u);
  EXPECT_EQ(series->entries[0].label, "2:00");
  EXPECT_EQ(series->entries[1].label, "3:00");
  EXPECT_EQ(series->entries[1].value, 3.5);
}

TEST(HostSeries, LabelMemberMayHaveAnyName) {
  for (const char* name : {"Time", "Day", "Month"}) {
    const auto series = TryReadSeries(std::string(R"({"Range":[1,2],"Value":[{")") + name +
                                      R"(":"x","Value":2}]})");
    ASSERT_TRUE(series.has_value()) << name;
    EXPECT_EQ(series->entries.at(0).label, "x") << name;
  }
}

TEST(HostSeries, RefusesTextsOfAnotherForm) {
  const char* const texts[] = {
      "",
      "true",
      "[]",
      "{}",
      R"({"Range":[0.0,1.0]})",
      R"({"Value":[]})",
      R"({"Range":[0.0],"Value":[]})",
      R"({"Range":["a","b"],"Value":[]})",
      R"({"Range":[0,1],"Value":{}})",
      R"({"Range":[0,1],"Value":[1]})",
      R"({"Range":[0,1],"Value":[{"Value":1}]})",
      R"({"Range":[0,1],"Value":[{"Time":1,"Value":1}]})",
      R"({"Range":[0,1],"Value":[{"Time":"1:00","Value":"1"}]})",
      R"({"Range":[0,1],"Value":[)",
  };
  for (const char* text : texts) EXPECT_FALSE(TryReadSeries(text).has_value()) << text;
}

TEST(HostSeries, DeepNestingDoesNotExhaustTheStack) {
  EXPECT_FALSE(TryReadSeries(std::string(1000000, '[')).has_value());
}

TEST(HostRanking, ReadsNameIconAndShareInOrder) {
  const auto ranking = TryReadRanking(
      R"([{"Name":"Oak","Icon":"C:\\i\\Oak.png","Value":60.5},{"Name":"","Icon":"","Value":0}])");
  ASSERT_TRUE(ranking.has_value());
  ASSERT_EQ(ranking->size(), 2u);
  EXPECT_EQ((*ranking)[0].name, "Oak");
  EXPECT_EQ((*ranking)[0].icon, "C:\\i\\Oak.png");
  EXPECT_EQ((*ranking)[0].share, 60.5);
  EXPECT_EQ((*ranking)[1].name, "");
}

TEST(HostRanking, EmptyArrayIsAnEmptyRanking) {
  const auto ranking = TryReadRanking("[]");
  ASSERT_TRUE(ranking.has_value());
  EXPECT_TRUE(ranking->empty());
}

TEST(HostRanking, RefusesTextsOfAnotherForm) {
  const char* const texts[] = {
      "",
      "true",
      "{}",
      "[1]",
      "[{}]",
      // The service writes this if a share is not a number.
      R"([{"Name":"a","Icon":"","Value":)",
      R"([{"Name":"a","Icon":"","Value":1})",
      R"([{"Name":1,"Icon":"","Value":1}])",
      R"([{"Name":"a","Icon":null,"Value":1}])",
      R"([{"Name":"a","Icon":"","Value":"1"}])",
      R"([{"Name":"a","Value":1}])",
      R"([{"Name":"a","Icon":""}])",
      R"([{"Icon":"","Value":1}])",
  };
  for (const char* text : texts) EXPECT_FALSE(TryReadRanking(text).has_value()) << text;
}

TEST(HostRanking, DeepNestingDoesNotExhaustTheStack) {
  EXPECT_FALSE(TryReadRanking(std::string(1000000, '[')).has_value());
}

TEST(HostRankingInput, SeparatesFolderAndDaysByAQuestionMark) {
  EXPECT_EQ(RankingInput("C:\\i", 30), "C:\\i?30");
  EXPECT_EQ(DaysOfInput("C:\\i?30"), "30");
  EXPECT_EQ(DaysOfInput("a?b?7"), "b?7");
  EXPECT_EQ(DaysOfInput("C:\\i"), "0");
}
