#include "base/json_rows.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <stdexcept>
#include <string>

#include "base/json_oracle.h"
#include "base/scratch_folder.h"
#include "base/text_builders.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Repeated;
using TestSupport::ScratchFolder;
using TestSupport::ShownRows;
using TestSupport::ShownRowSink;

namespace {

constexpr std::array<std::string_view, 2> kNames{"Key", "Value"};

struct Result {
  JsonRowsOutcome outcome;
  ShownRows rows;
};

Result Read(std::string_view text, const JsonLimits& limits = {}) {
  const ScratchFolder folder;
  TestSupport::WriteBytes(folder.File("rows.json"), std::string(text));
  ShownRowSink sink;
  const auto outcome = ReadJsonRows(folder.File("rows.json").wstring(), kNames, sink, limits);
  return {outcome, sink.rows};
}

ShownRows RowsOf(std::string_view text) {
  const Result result = Read(text);
  EXPECT_EQ(result.outcome, JsonRowsOutcome::kRows) << text;
  return result.rows;
}

}  // namespace

TEST(ReadJsonRows, PassesOnTheNamedMembersInTheOrderOfTheNames) {
  EXPECT_EQ(RowsOf(R"([{"Value":1,"Other":2,"Key":"a"},{"Key":"b","Value":-3}])"),
            (ShownRows{{"string a", "number 1"}, {"string b", "number -3"}}));
}

TEST(ReadJsonRows, KeepsTheTypeOfANumber) {
  EXPECT_EQ(RowsOf(R"([{"Key":2147483648,"Value":4294967296},{"Key":-2147483648,"Value":1.5},
                       {"Key":18446744073709551615,"Value":-9223372036854775808}])"),
            (ShownRows{{"number 2147483648", "number 4294967296"},
                       {"number -2147483648", "double 1.500000"},
                       {"number 18446744073709551615", "number -9223372036854775808"}}));
}

TEST(ReadJsonRows, TakesTheFirstOfSeveralMembersWithOneName) {
  EXPECT_EQ(RowsOf(R"([{"Key":"a","Key":"b","Value":[1],"Value":2}])"),
            (ShownRows{{"string a", "null"}}));
  EXPECT_EQ(RowsOf(R"([{"Key":null,"Key":"b","Value":{"Value":3},"Value":2}])"),
            (ShownRows{{"null", "null"}}));
}

TEST(ReadJsonRows, PassesOnNullForAMissingMember) {
  EXPECT_EQ(RowsOf(R"([{"Key":"a"},{"Value":1},{}])"),
            (ShownRows{{"string a", "null"}, {"null", "number 1"}, {"null", "null"}}));
}

TEST(ReadJsonRows, PassesOnARowWithoutMembersForAnElementThatIsNoObject) {
  EXPECT_EQ(RowsOf(R"([1,"Key",null,true,2.5,[],["Key","a"],{"Key":"a"}])"),
            (ShownRows{{"null", "null"},
                       {"null", "null"},
                       {"null", "null"},
                       {"null", "null"},
                       {"null", "null"},
                       {"null", "null"},
                       {"null", "null"},
                       {"string a", "null"}}));
}

TEST(ReadJsonRows, IgnoresMembersOfInnerObjects) {
  EXPECT_EQ(RowsOf(R"([{"Inner":{"Key":"a","Value":1},"Value":2},[{"Key":"b"}],
                       {"Key":[{"Key":"c"}],"Value":"d"}])"),
            (ShownRows{{"null", "number 2"}, {"null", "null"}, {"null", "string d"}}));
}

TEST(ReadJsonRows, TellsTrueAndFalseFromNull) {
  EXPECT_EQ(RowsOf(R"([{"Key":true,"Value":false}])"), (ShownRows{{"other", "other"}}));
}

TEST(ReadJsonRows, ComparesNamesWithTheirZerosAndCase) {
  EXPECT_EQ(RowsOf(R"([{"Key\u0000":"a","key":"b","KeyX":"c","Ke":"d","Value":"e\u0000f"}])"),
            (ShownRows{{"null", std::string("string e\0f", 10)}}));
}

TEST(ReadJsonRows, ReadsEscapesInNamesAndTexts) {
  EXPECT_EQ(RowsOf(R"([{"\u004bey":"a\n\"b\"","Value":"\u00e9"}])"),
            (ShownRows{{"string a\n\"b\"", "string \xC3\xA9"}}));
}

TEST(ReadJsonRows, PassesOnNoRowOfAnEmptyArray) {
  EXPECT_EQ(Read("[]").outcome, JsonRowsOutcome::kRows);
  EXPECT_TRUE(Read("[]").rows.empty());
}

TEST(ReadJsonRows, HasNoRowsForARootThatIsNoArray) {
  for (const char* text : {R"({"Key":"a","Value":{"Key":"b"}})", "1", "\"Key\"", "null", "{}",
                           R"({"Rows":[{"Key":"a"}]})"}) {
    const Result result = Read(text);
    EXPECT_EQ(result.outcome, JsonRowsOutcome::kNoArray) << text;
    EXPECT_TRUE(result.rows.empty()) << text;
  }
}

TEST(ReadJsonRows, CannotReadWhatIsNotJson) {
  for (const char* text : {"", "[", "[1", R"([{"Key":"a"})", R"([{"Key":"a"}] x)", "[1e400]",
                           R"([{"Key":"a"},])", "[{\"Key\":\"\x01\"}]"}) {
    EXPECT_EQ(Read(text).outcome, JsonRowsOutcome::kUnreadable) << text;
  }
}

TEST(ReadJsonRows, CannotReadAMissingFileOrAFolder) {
  const ScratchFolder folder;
  ShownRowSink sink;
  EXPECT_EQ(ReadJsonRows(folder.File("missing.json").wstring(), kNames, sink),
            JsonRowsOutcome::kUnreadable);
  EXPECT_EQ(ReadJsonRows(folder.File("").wstring(), kNames, sink), JsonRowsOutcome::kUnreadable);
}

TEST(ReadJsonRows, EndsAtAZeroByte) {
  const std::string text(R"([{"Key":"a"}])");
  EXPECT_EQ(RowsOf(text + std::string(text.size(), '\0')), (ShownRows{{"string a", "null"}}));
}

TEST(ReadJsonRows, HoldsTheLimitsOfTheCaller) {
  EXPECT_EQ(Read("[1,2]", {.fileBytes = 5}).outcome, JsonRowsOutcome::kRows);
  EXPECT_EQ(Read("[1,2]", {.fileBytes = 4}).outcome, JsonRowsOutcome::kUnreadable);
  EXPECT_EQ(Read("[1,2,3]", {.openValues = 4}).outcome, JsonRowsOutcome::kRows);
  EXPECT_EQ(Read("[1,2,3]", {.openValues = 3}).outcome, JsonRowsOutcome::kUnreadable);
}

TEST(ReadJsonRows, HoldsTheLimitsOfEveryFile) {
  EXPECT_EQ(Read(std::string(64, '[') + std::string(64, ']')).outcome, JsonRowsOutcome::kRows);
  EXPECT_EQ(Read(std::string(65, '[') + std::string(65, ']')).outcome,
            JsonRowsOutcome::kUnreadable);
  EXPECT_EQ(Read("[1e-1000000000]").outcome, JsonRowsOutcome::kUnreadable);
}

TEST(ReadJsonRows, CannotReadAFileWithRubbishAfterItsRoot) {
  EXPECT_EQ(Read("[1]" + std::string(70'000, ' ') + "e1234567890").outcome,
            JsonRowsOutcome::kUnreadable);
}

TEST(ReadJsonRows, LetsTheSinksExceptionPass) {
  class ThrowingSink : public ShownRowSink {
   public:
    void Take(JsonRow) override { throw std::runtime_error("full"); }
  };
  const ScratchFolder folder;
  TestSupport::WriteBytes(folder.File("rows.json"), R"([{"Key":"a"}])");
  ThrowingSink sink;
  EXPECT_THROW(static_cast<void>(ReadJsonRows(folder.File("rows.json").wstring(), kNames, sink)),
               std::runtime_error);
}

// Each text in its own place of memory, so that a read beyond its end would be found.
TEST(ReadJsonRows, SkipsBlanksOfAnyLengthLikeADocument) {
  const ScratchFolder folder;
  const std::wstring path = folder.File("rows.json").wstring();
  std::mt19937 random(1);
  const auto blanks = [&random] {
    std::string text(random() % 40, ' ');
    for (std::size_t i = random() % 3; i > 0 && !text.empty(); --i) {
      const bool isOther = random() % 400 == 0;
      text[random() % text.size()] = isOther ? "\v\"\0"[random() % 3] : "\n\r\t"[random() % 3];
    }
    return text;
  };
  int parsed = 0;
  for (int i = 0; i < 150; ++i) {
    std::string text = "[";
    for (int row = 0; row < 20; ++row) {
      for (const char* part :
           {"{", R"("Key")", ":", R"("a        b")", ",", R"("Value")", ":", "1", "}", ","}) {
        text += (random() % 2 == 0 ? blanks() : "") + part;
      }
    }
    text += "2" + blanks() + "]" + blanks();
    TestSupport::WriteBytes(folder.File("rows.json"), text);
    ShownRowSink sink;
    const bool isRead = ReadJsonRows(path, kNames, sink) == JsonRowsOutcome::kRows;
    const auto document = TestSupport::DocumentByCharacters(path);
    ASSERT_EQ(isRead, document != nullptr) << testing::PrintToString(text);
    if (!isRead) continue;
    EXPECT_EQ(sink.rows, TestSupport::RowsOfDocument(*document, kNames));
    ++parsed;
  }
  EXPECT_GT(parsed, 75);
  EXPECT_LT(parsed, 145);
}
