#include "security/access/rule_validators.h"

#include <gmock/gmock.h>

#include <cstdint>
#include <string>

#include "platform/winrt/calls.h"
#include "security/access/rule_inputs.h"
#include "security/access/rule_validators_fixture.h"

// The rules that compare plain texts.
namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using namespace TestSupport;

using RegexRule = RuleValidatorTest;

TEST_F(RegexRule, MatchesTheWholeValue) {
  EXPECT_TRUE(Judge(L"regex", L"[a-z]{3}\\d?", L"abc1"));
  EXPECT_FALSE(Judge(L"regex", L"[a-z]{3}", L"abc1"));
}

TEST_F(RegexRule, RefusesEveryValueForAPatternThatDoesNotCompile) {
  EXPECT_FALSE(Judge(L"regex", L"(abc", L"abc"));
}

TEST_F(RegexRule, AcceptsListsOfNumbers) {
  EXPECT_TRUE(Judge(L"regex", L"\\d+(?:,\\d+){0,499}", L"1,2,3"));
  EXPECT_FALSE(Judge(L"regex", L"\\d+(?:,\\d+){0,499}", L"1,2,"));
}

TEST_F(RegexRule, AcceptsHostNames) {
  const std::wstring host = L"(?:[a-z0-9](?:[a-z0-9-]{0,61}[a-z0-9])?\\.){1,126}[a-z]{2,63}";
  EXPECT_TRUE(Judge(L"regex", host, L"www.example.com"));
  EXPECT_FALSE(Judge(L"regex", host, L"www..com"));
}

TEST_F(RegexRule, AcceptsEachOf1300Words) {
  std::wstring words = L"word1000";
  for (int i = 1001; i < 2300; ++i) words += L"|word" + std::to_wstring(i);
  for (int i = 1000; i < 2300; ++i) {
    EXPECT_TRUE(Judge(L"regex", words, L"word" + std::to_wstring(i)));
  }
  EXPECT_FALSE(Judge(L"regex", words, L"word2300"));
}

TEST_F(RegexRule, AcceptsCountsOfSomeThousandCharacters) {
  EXPECT_TRUE(Judge(L"regex", L".{0,10000}", L"abc"));
  EXPECT_TRUE(Judge(L"regex", L"[^<>]{0,9000}", std::wstring(6000, L'a')));
  EXPECT_FALSE(Judge(L"regex", L"[^<>]{0,9000}", std::wstring(9001, L'a')));
}

TEST_F(RegexRule, LooksAheadWithinTheWholeValue) {
  EXPECT_FALSE(Judge(L"regex", L"foo(?=\\bbar)bar", L"foobar"));
  EXPECT_FALSE(Judge(L"regex", L"a(?=^b)b", L"ab"));
  EXPECT_TRUE(Judge(L"regex", L"a(?=b)b", L"ab"));
}

TEST_F(RegexRule, HandlesAMillionCharacters) {
  EXPECT_FALSE(Judge(L"regex", L"(a+)+b", std::wstring(1'000'000, L'a')));
  EXPECT_TRUE(Judge(L"regex", L"[\\\\]+", std::wstring(1'000'000, L'\\')));
}

using ContainedInListRule = RuleValidatorTest;

TEST_F(ContainedInListRule, ReadsStringsNumbersAndTruthValues) {
  EXPECT_TRUE(Judge(L"contained_in_list", L"red,3,true", L"red"));
  EXPECT_TRUE(Judge(L"contained_in_list", L"red,3,true", 3.0));
  EXPECT_TRUE(Judge(L"contained_in_list", L"red,3,true", true));
  EXPECT_FALSE(Judge(L"contained_in_list", L"red,3,true", false));
  EXPECT_TRUE(Judge(L"contained_in_list", L"false", false));
  EXPECT_FALSE(Judge(L"contained_in_list", L"3.0", 3.0));
  EXPECT_TRUE(Judge(L"contained_in_list", L"0.1", 0.1));
}

TEST_F(ContainedInListRule, RefusesEveryOtherType) {
  const XmlNodeReference node = MakeNode(calls, {L"4,,x", {}});
  EXPECT_FALSE(RuleValidators.at(L"contained_in_list")(node, BoxInt32(calls)));
  EXPECT_FALSE(RuleValidators.at(L"contained_in_list")(node, MakePlainObject(calls)));
}

TEST_F(ContainedInListRule, ReportsOtherTypesAsInvalidArguments) {
  const ValueReference value = BoxInt32(calls);
  try {
    static_cast<void>(ReadBoxedText(*value));
    FAIL() << "nothing was thrown";
  } catch (const Platform::WinRt::CallFailure& failure) {
    EXPECT_EQ(static_cast<std::uint32_t>(failure.Result()), 0x80070057U);
  }
}

TEST_F(ContainedInListRule, KeepsBlanksAndNullCharacters) {
  EXPECT_FALSE(Judge(L"contained_in_list", L"red, green", L"green"));
  EXPECT_TRUE(Judge(L"contained_in_list", L"red,g\0n"s, L"g\0n"s));
  EXPECT_FALSE(Judge(L"contained_in_list", L"red,g", L"g\0n"s));
}

TEST_F(ContainedInListRule, HandlesAListOfTenMillionCharacters) {
  EXPECT_FALSE(Judge(L"contained_in_list", std::wstring(10'000'000, L','), L"red"));
}

using BeginsWithFromListRule = RuleValidatorTest;

TEST_F(BeginsWithFromListRule, IgnoresCaseAndAcceptsEveryValueForAnEmptyItem) {
  EXPECT_TRUE(Judge(L"begins_with_from_list", L"D:\\,c:\\data", L"C:\\DATA\\x"));
  EXPECT_FALSE(Judge(L"begins_with_from_list", L"D:\\,c:\\data", L"C:\\DAT"));
  EXPECT_TRUE(Judge(L"begins_with_from_list", L"a,,b", L"C:\\DAT"));
}

}  // namespace
}  // namespace Zq::Gantry::Security
