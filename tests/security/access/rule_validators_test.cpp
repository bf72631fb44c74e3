#include "security/access/rule_validators.h"

#include <gmock/gmock.h>
#include <winstring.h>

#include <cstdint>
#include <limits>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "import_patch.h"
#include "platform/winrt/calls.h"
#include "security/access/fake_rules.h"
#include "security/access/rule_inputs.h"
#include "security/trust/fake_path_calls.h"
#include "support/log_capture.h"
#include "support/runtime_text_ledger.h"

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace TestSupport;

constexpr const wchar_t* kListKinds[] = {L"contained_in_list", L"begins_with_from_list"};
constexpr const wchar_t* kTextKinds[] = {L"regex", L"contained_in_list", L"begins_with_from_list",
                                         L"begins_with_from_list_with_env_vars"};

/// One judge's rule and value, faked. No object and no text outlives a test, and no judge writes a
/// line.
class RulesTest : public testing::Test {
 protected:
  template <typename Value>
  bool Judge(const wchar_t* kind, const std::wstring& rule, Value value) {
    return RuleValidators.at(kind)(MakeNode(calls, {rule, {}}), Box(calls, value));
  }

  template <typename Value>
  bool InRange(const std::map<std::wstring, std::wstring>& attributes, Value value) {
    return RuleValidators.at(L"numeric_range")(MakeNode(calls, {L"", attributes}),
                                               Box(calls, value));
  }

  void TearDown() override {
    EXPECT_EQ(Standin::Packages::LiveObjects(), 0);
    if (isQuiet) {
      EXPECT_THAT(log.Records(), IsEmpty());
    }
  }

  const RuntimeTextLedger texts;
  LogCapture log;
  FakeRpcQuery noClient;
  RuleCalls calls;
  bool isQuiet = true;
};

using RuleTable = RulesTest;

TEST_F(RuleTable, HasTheSixKindsInTheOrderOfTheirCharacters) {
  std::vector<std::wstring> kinds;
  for (const auto& [kind, judge] : RuleValidators) kinds.emplace_back(kind.View());
  EXPECT_THAT(kinds, ElementsAre(L"begins_with_from_list", L"begins_with_from_list_with_env_vars",
                                 L"contained_in_list", L"none", L"numeric_range", L"regex"));
  EXPECT_EQ(RuleValidators.count(L"Regex"), 0U);
}

TEST_F(RuleTable, CannotBeChanged) {
  EXPECT_TRUE(std::is_const_v<std::remove_reference_t<decltype(RuleValidators)>>);
  EXPECT_TRUE(std::is_const_v<std::remove_reference_t<decltype((RuleValidators.begin()->second))>>);
}

TEST_F(RuleTable, ReferencesAndTextsAreOnePointer) {
  EXPECT_EQ(sizeof(RuntimeText), sizeof(HSTRING));
  EXPECT_EQ(sizeof(XmlNodeReference), sizeof(void*));
  EXPECT_EQ(sizeof(ValueReference), sizeof(void*));
  EXPECT_TRUE(std::is_standard_layout_v<RuntimeText>);
  EXPECT_TRUE(std::is_standard_layout_v<ValueReference>);
}

TEST_F(RuleTable, TextsAreOrderedByPlainCharacterValue) {
  EXPECT_TRUE(RuntimeText(L"Z") < RuntimeText(L"a"));
  EXPECT_TRUE(RuntimeText(L"a") < RuntimeText(L"\x00e9"));
  EXPECT_TRUE(RuntimeText(L"ab") < RuntimeText(L"b"));
  EXPECT_TRUE(RuntimeText() < RuntimeText(L"a"));
  EXPECT_FALSE(RuntimeText(L"a") < RuntimeText(L"a"));
  EXPECT_EQ(RuntimeText(static_cast<const wchar_t*>(nullptr)), RuntimeText(L""));
  EXPECT_FALSE(RuntimeText(L"a") == RuntimeText(L"b"));
}

TEST_F(RuleTable, TextsAreCopiedAndMoved) {
  RuntimeText first(L"first");
  RuntimeText copy(first);
  EXPECT_EQ(copy.View(), L"first");
  RuntimeText moved(std::move(first));
  EXPECT_EQ(moved.View(), L"first");
  copy = RuntimeText(L"other");
  EXPECT_EQ(copy.View(), L"other");
  EXPECT_EQ(moved.View(), L"first");
  copy = moved;
  EXPECT_EQ(copy.View(), L"first");
}

TEST_F(RuleTable, TextsKeepTheirZeroCharacters) {
  const RuntimeText text(L"a\0b"s);
  EXPECT_EQ(text.View(), L"a\0b"s);
  EXPECT_FALSE(text == RuntimeText(L"a"));
}

int liveTexts = 0;
decltype(&WindowsCreateString) realCreate = nullptr;
decltype(&WindowsDuplicateString) realDuplicate = nullptr;
decltype(&WindowsDeleteString) realDelete = nullptr;

TEST_F(RuleTable, EachTextIsGivenBackOnce) {
  const Standin::ImportPatch create(
      "WindowsCreateString", +[](PCNZWCH text, UINT32 length, HSTRING* made) -> HRESULT {
        ++liveTexts;
        return realCreate(text, length, made);
      });
  const Standin::ImportPatch duplicate(
      "WindowsDuplicateString", +[](HSTRING text, HSTRING* copy) -> HRESULT {
        ++liveTexts;
        return realDuplicate(text, copy);
      });
  const Standin::ImportPatch remove(
      "WindowsDeleteString", +[](HSTRING text) -> HRESULT {
        --liveTexts;
        return realDelete(text);
      });
  realCreate = create.Original<std::remove_pointer_t<decltype(realCreate)>>();
  realDuplicate = duplicate.Original<std::remove_pointer_t<decltype(realDuplicate)>>();
  realDelete = remove.Original<std::remove_pointer_t<decltype(realDelete)>>();
  {
    RuntimeText first(L"first");
    EXPECT_EQ(liveTexts, 1);
    RuntimeText copy(first);
    EXPECT_EQ(liveTexts, 2);
    const RuntimeText moved(std::move(first));
    EXPECT_EQ(liveTexts, 2);
    copy = moved;
    EXPECT_EQ(liveTexts, 2);
    copy = RuntimeText(L"other");
    EXPECT_EQ(liveTexts, 2);
    const RuntimeText& same = copy;
    copy = same;
    EXPECT_EQ(copy.View(), L"other");
  }
  EXPECT_EQ(liveTexts, 0);
}

TEST_F(RuleTable, EachReferenceIsGivenBackOnce) {
  struct Counted {
    int references = 1;
    void AddRef() { ++references; }
    void Release() { --references; }
  };
  using Reference = RuntimeReference<Counted>;
  Counted object;
  {
    Reference first(&object);
    Reference copy(first);
    EXPECT_EQ(object.references, 3);
    Reference moved(std::move(first));
    EXPECT_EQ(object.references, 3);
    const Reference& same = copy;
    copy = same;
    copy = moved;
    EXPECT_EQ(object.references, 3);
    moved = nullptr;
    EXPECT_EQ(object.references, 2);
    EXPECT_FALSE(moved);
    EXPECT_EQ(copy.get(), &object);
  }
  EXPECT_EQ(object.references, 1);
}

TEST_F(RuleTable, ATextThatCannotBeCopiedIsRaised) {
  const RuntimeText text(L"text");
  const Standin::ImportPatch duplicate(
      "WindowsDuplicateString", +[](HSTRING, HSTRING*) -> HRESULT { return E_OUTOFMEMORY; });
  EXPECT_THROW(RuntimeText{text}, Platform::WinRt::CallFailure);
}

using EveryRule = RulesTest;

TEST_F(EveryRule, ButNoneRefusesANullValueBeforeTheRuleIsRead) {
  for (const auto& [kind, judge] : RuleValidators) {
    if (kind == L"none") continue;
    EXPECT_FALSE(judge(MakeNode(calls, {L"", {}}), nullptr));
  }
  EXPECT_FALSE(RuleValidators.at(L"numeric_range")(nullptr, nullptr));
  EXPECT_THAT(calls.made, IsEmpty());
}

TEST_F(EveryRule, OnTextsReadsTheRuleFirstAndThenTheValue) {
  for (const wchar_t* kind : {L"regex", L"begins_with_from_list"}) {
    calls.made.clear();
    Judge(kind, L"x", L"x");
    EXPECT_THAT(calls.made, ElementsAre("as IXmlNodeSerializer", "InnerText", "Boxed"));
  }
  calls.made.clear();
  Judge(L"contained_in_list", L"x", L"x");
  EXPECT_THAT(calls.made, ElementsAre("as IXmlNodeSerializer", "InnerText", "Type", "Boxed"));
}

TEST_F(EveryRule, OnTextsRefusesANullNode) {
  for (const wchar_t* kind : kTextKinds) {
    EXPECT_FALSE(RuleValidators.at(kind)(nullptr, Box(calls, L"")));
  }
  EXPECT_THAT(calls.made, IsEmpty());
}

TEST_F(EveryRule, OnTextsRefusesANodeThatHasNoText) {
  for (const wchar_t* kind : kTextKinds) {
    EXPECT_FALSE(RuleValidators.at(kind)(MakeNodeWithoutText(calls), Box(calls, L"")));
  }
}

TEST_F(EveryRule, TakesEachFailingCallForANo) {
  for (const char* call : {"as IXmlNodeSerializer", "InnerText", "Boxed"}) {
    calls.failures = {{call, E_ACCESSDENIED}};
    for (const wchar_t* kind : kTextKinds) EXPECT_FALSE(Judge(kind, L",,x", L"x")) << call;
  }
  calls.failures = {{"Type", E_FAIL}};
  EXPECT_FALSE(Judge(L"contained_in_list", L"x", L"x"));
}

TEST_F(EveryRule, TakesASuccessWithoutAnObjectForANo) {
  calls.givingNothing = {"as IXmlNodeSerializer", "as IXmlAttribute"};
  for (const wchar_t* kind : kTextKinds) EXPECT_FALSE(Judge(kind, L",,x", L"x"));
  EXPECT_FALSE(InRange({{L"min", L"1"}}, 5.0));
}

TEST_F(EveryRule, TakesEverySuccessForOneAndNotOnlyThePlainOne) {
  calls.failures = {{"Type", S_FALSE}, {"Boxed", S_FALSE}};
  EXPECT_TRUE(Judge(L"contained_in_list", L"3", 3.0));
  EXPECT_TRUE(InRange({{L"max", L"3"}}, 3.0));
}

TEST_F(EveryRule, HandsOnThatMemoryHasRunOut) {
  for (const char* call : {"as IXmlNodeSerializer", "InnerText", "Boxed"}) {
    calls.failures = {{call, E_OUTOFMEMORY}};
    for (const wchar_t* kind : kTextKinds) EXPECT_THROW(Judge(kind, L"x", L"x"), std::bad_alloc);
  }
  calls.failures = {{"Attributes", E_OUTOFMEMORY}};
  EXPECT_THROW(InRange({}, 1.0), std::bad_alloc);
}

TEST_F(EveryRule, HandsOnWhatIsRaisedForWantOfMemory) {
  const XmlNodeReference node = MakeNode(calls, {L"x", {{L"min", L"1"}}});
  const std::vector<std::pair<RuleJudge, ValueReference>> questions = {
      {RuleValidators.at(L"regex"), Box(calls, L"x")},
      {RuleValidators.at(L"contained_in_list"), Box(calls, L"x")},
      {RuleValidators.at(L"begins_with_from_list"), Box(calls, L"x")},
      {RuleValidators.at(L"begins_with_from_list_with_env_vars"), Box(calls, L"x")},
      {RuleValidators.at(L"numeric_range"), Box(calls, 1.0)},
  };
  const Standin::ImportPatch read(
      "WindowsGetStringRawBuffer", +[](HSTRING, UINT32*) -> PCWSTR { throw std::bad_alloc(); });
  for (const auto& [judge, value] : questions) EXPECT_THROW(judge(node, value), std::bad_alloc);
}

TEST_F(EveryRule, OnStringsRefusesAnyOtherBoxedType) {
  for (const wchar_t* kind :
       {L"regex", L"begins_with_from_list", L"begins_with_from_list_with_env_vars"}) {
    EXPECT_FALSE(Judge(kind, L".*,,3,true", 3.0));
    EXPECT_FALSE(Judge(kind, L".*,,3,true", true));
    EXPECT_FALSE(RuleValidators.at(kind)(MakeNode(calls, {L".*,,", {}}), BoxInt32(calls)));
    EXPECT_FALSE(RuleValidators.at(kind)(MakeNode(calls, {L".*,,", {}}), MakePlainObject(calls)));
  }
}

TEST_F(EveryRule, OnPlainTextsRefusesAClimbingPath) {
  const std::wstring path = L"C:\\a\\..\\b";
  for (const wchar_t* kind : kListKinds) EXPECT_FALSE(Judge(kind, path, path));
  EXPECT_FALSE(Judge(L"regex", L".*", path));
  EXPECT_FALSE(Judge(L"regex", L".*", L"%TEMP%\\..\\x"));
  EXPECT_FALSE(Judge(L"begins_with_from_list", L"one,,two", L"%TEMP%\\..\\x"));
}

TEST_F(EveryRule, LetsARelativePathWithTwoPointsGoToItsOwnTest) {
  EXPECT_TRUE(Judge(L"regex", L"\\.\\.[\\\\]b", L"..\\b"));
  EXPECT_TRUE(Judge(L"contained_in_list", L"a,..\\b", L"..\\b"));
  EXPECT_TRUE(Judge(L"begins_with_from_list", L"..", L"..\\b"));
  EXPECT_TRUE(Judge(L"contained_in_list", L"from 1..9", L"from 1..9"));
  EXPECT_FALSE(Judge(L"contained_in_list", L"a", L"..\\b"));
}

using RegexRule = RulesTest;

TEST_F(RegexRule, WantsTheWholeValue) {
  EXPECT_TRUE(Judge(L"regex", L"[a-z]{3}\\d?", L"abc1"));
  EXPECT_FALSE(Judge(L"regex", L"[a-z]{3}", L"abc1"));
}

TEST_F(RegexRule, TakesAPatternThatDoesNotCompileForANo) {
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

TEST_F(RegexRule, BearsAMillionCharacters) {
  EXPECT_FALSE(Judge(L"regex", L"(a+)+b", std::wstring(1'000'000, L'a')));
  EXPECT_TRUE(Judge(L"regex", L"[\\\\]+", std::wstring(1'000'000, L'\\')));
}

using ContainedInListRule = RulesTest;

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

TEST_F(ContainedInListRule, TakesEveryOtherTypeForAnInvalidArgument) {
  const ValueReference value = BoxInt32(calls);
  try {
    static_cast<void>(ReadBoxedText(*value));
    FAIL() << "nothing was raised";
  } catch (const Platform::WinRt::CallFailure& failure) {
    EXPECT_EQ(static_cast<std::uint32_t>(failure.Result()), 0x80070057U);
  }
}

TEST_F(ContainedInListRule, KeepsBlanksAndEmbeddedZeros) {
  EXPECT_FALSE(Judge(L"contained_in_list", L"red, green", L"green"));
  EXPECT_TRUE(Judge(L"contained_in_list", L"red,g\0n"s, L"g\0n"s));
  EXPECT_FALSE(Judge(L"contained_in_list", L"red,g", L"g\0n"s));
}

TEST_F(ContainedInListRule, BearsAListOfTenMillionCharacters) {
  EXPECT_FALSE(Judge(L"contained_in_list", std::wstring(10'000'000, L','), L"red"));
}

using BeginsWithRule = RulesTest;

TEST_F(BeginsWithRule, DoesNotMindTheCaseAndTakesAnEmptyItemForEveryValue) {
  EXPECT_TRUE(Judge(L"begins_with_from_list", L"D:\\,c:\\data", L"C:\\DATA\\x"));
  EXPECT_FALSE(Judge(L"begins_with_from_list", L"D:\\,c:\\data", L"C:\\DAT"));
  EXPECT_TRUE(Judge(L"begins_with_from_list", L"a,,b", L"C:\\DAT"));
}

using ExpandedBeginningRule = RulesTest;

TEST_F(ExpandedBeginningRule, ExpandsValueAndItems) {
  isQuiet = false;
  const ScopedVariable variable(L"WATTLEAF_RULE", L"C:\\Rules");
  constexpr wchar_t kKind[] = L"begins_with_from_list_with_env_vars";
  EXPECT_TRUE(Judge(kKind, L"C:\\other,%WATTLEAF_RULE%\\", L"c:\\rules\\x"));
  EXPECT_TRUE(Judge(kKind, L"C:\\Rules\\x", L"%WATTLEAF_RULE%\\x\\y"));
  EXPECT_FALSE(Judge(kKind, L"C:\\Rules\\x\\z", L"%WATTLEAF_RULE%\\x\\y"));
}

TEST_F(ExpandedBeginningRule, AClimbingPathIsSettledByItsExpansion) {
  isQuiet = false;
  constexpr wchar_t kKind[] = L"begins_with_from_list_with_env_vars";
  EXPECT_FALSE(Judge(kKind, L"C:\\Rules", L"C:\\Rules\\..\\other"));
  EXPECT_TRUE(Judge(kKind, L"C:\\other", L"C:\\Rules\\..\\other"));
}

TEST_F(ExpandedBeginningRule, RefusesTwoPointsThatTheExpansionLeavesEvenIfTheListHoldsThem) {
  isQuiet = false;
  constexpr wchar_t kKind[] = L"begins_with_from_list_with_env_vars";
  EXPECT_FALSE(Judge(kKind, L"C:\\a..b,,", L"C:\\a..b"));
  EXPECT_TRUE(Judge(kKind, L"C:\\a.b", L"C:\\a.b"));
}

TEST_F(ExpandedBeginningRule, AnEmptyItemPassesEveryValue) {
  isQuiet = false;
  EXPECT_TRUE(Judge(L"begins_with_from_list_with_env_vars", L"C:\\x,,", L"D:\\y"));
}

TEST_F(ExpandedBeginningRule, AnItemTooLongForAPathPassesEveryValue) {
  isQuiet = false;
  const std::wstring tooLong = L"C:\\" + std::wstring(10'000'000, L'a');
  EXPECT_TRUE(Judge(L"begins_with_from_list_with_env_vars", L"C:\\x," + tooLong, L"D:\\y"));
}

TEST_F(ExpandedBeginningRule, AValueTooLongForAPathPassesOnlyWithSuchAnItem) {
  isQuiet = false;
  const std::wstring tooLong = L"C:\\x\\" + std::wstring(1'000'000, L'a');
  EXPECT_FALSE(Judge(L"begins_with_from_list_with_env_vars", L"C:\\x", tooLong));
  EXPECT_TRUE(Judge(L"begins_with_from_list_with_env_vars", L"C:\\x," + tooLong, tooLong));
}

TEST_F(ExpandedBeginningRule, ReadsAValueUpToItsFirstNullCharacter) {
  isQuiet = false;
  EXPECT_TRUE(Judge(L"begins_with_from_list_with_env_vars", L"C:\\x", L"C:\\x\0\\..\\y"s));
}

TEST_F(ExpandedBeginningRule, WritesTheLinesOfTheExpansionAndNoOther) {
  isQuiet = false;
  Judge(L"begins_with_from_list_with_env_vars", L"C:\\x", L"C:\\y");
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"ExpandEnvironmentStrings: [C:\\y] [C:\\y]"),
                                         Info(L"GetFullPathName: [C:\\y]"),
                                         Info(L"ExpandEnvironmentStrings: [C:\\x] [C:\\x]"),
                                         Info(L"GetFullPathName: [C:\\x]")));
}

TEST_F(ExpandedBeginningRule, ExpandsAnEmptyValueLikeAnyOther) {
  isQuiet = false;
  EXPECT_FALSE(Judge(L"begins_with_from_list_with_env_vars", L"", L""));
  ASSERT_FALSE(log.Records().empty());
  EXPECT_EQ(log.Records().front(), Info(L"ExpandEnvironmentStrings: [] []"));
}

using NumericRangeRule = RulesTest;

TEST_F(NumericRangeRule, DropsTheFractionAndTakesBothLimits) {
  EXPECT_FALSE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 0.5));
  EXPECT_TRUE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 1.0));
  EXPECT_TRUE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 10.9));
  EXPECT_FALSE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 11.0));
  EXPECT_TRUE(InRange({{L"min", L"12 apples"}}, 12.0));
}

TEST_F(NumericRangeRule, WithoutAttributesTakesEveryNumber) {
  EXPECT_TRUE(InRange({}, -1e300));
  EXPECT_TRUE(InRange({{L"step", L"x"}}, 1e300));
  EXPECT_FALSE(InRange({}, std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(NumericRangeRule, WithoutAnAttributeMapHasNoLimits) {
  const XmlNodeReference node = MakeNode(calls, {L"", {{L"min", L"5"}}, /*hasAttributeMap=*/false});
  EXPECT_TRUE(RuleValidators.at(L"numeric_range")(node, Box(calls, 1.0)));
}

TEST_F(NumericRangeRule, ANullNodePassesEveryValueThatIsThere) {
  EXPECT_TRUE(RuleValidators.at(L"numeric_range")(nullptr, Box(calls, L"no number")));
  EXPECT_THAT(calls.made, IsEmpty());
}

TEST_F(NumericRangeRule, RefusesWhatIsNoNumberBeforeItLooksForLimits) {
  EXPECT_FALSE(InRange({}, L"5"));
  EXPECT_FALSE(InRange({}, true));
  EXPECT_FALSE(RuleValidators.at(L"numeric_range")(MakeNode(calls, {}), BoxInt32(calls)));
  EXPECT_THAT(calls.made, IsEmpty());
}

TEST_F(NumericRangeRule, ReadsTheValueThenMinThenMax) {
  InRange({{L"min", L"1"}, {L"max", L"10"}}, 5.0);
  EXPECT_THAT(calls.made,
              ElementsAre("Boxed", "Attributes", "GetNamedItem min", "as IXmlAttribute", "Value",
                          "Attributes", "GetNamedItem max", "as IXmlAttribute", "Value"));
}

TEST_F(NumericRangeRule, TakesEachFailingCallForANo) {
  for (const char* call : {"Attributes", "GetNamedItem min", "GetNamedItem max", "as IXmlAttribute",
                           "Value", "Boxed"}) {
    calls.failures = {{call, E_FAIL}};
    EXPECT_FALSE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 5.0)) << call;
  }
}

TEST_F(NumericRangeRule, ALimitWithoutANumberIsANoAndOneBeyond32BitsIsRaised) {
  EXPECT_FALSE(InRange({{L"min", L"one"}}, 5.0));
  EXPECT_FALSE(InRange({{L"max", L""}}, 5.0));
  EXPECT_THROW(InRange({{L"min", L"-2147483649"}}, 5.0), std::out_of_range);
  EXPECT_THROW(InRange({{L"max", L"2147483648"}}, 5.0), std::out_of_range);
  EXPECT_TRUE(InRange({{L"min", L"-2147483648"}, {L"max", L"2147483647"}}, 5.0));
}

TEST_F(NumericRangeRule, TakesANameThatCannotBeMadeForANo) {
  const RuleJudge judge = RuleValidators.at(L"numeric_range");
  const Standin::ImportPatch create(
      "WindowsCreateString", +[](PCNZWCH, UINT32, HSTRING*) -> HRESULT { return E_FAIL; });
  EXPECT_FALSE(judge(MakeNode(calls, {}), Box(calls, 5.0)));
}

using NoneRule = RulesTest;

TEST_F(NoneRule, PassesWhateverItIsAndLooksAtNothing) {
  const RuleJudge judge = RuleValidators.at(L"none");
  EXPECT_TRUE(judge(nullptr, nullptr));
  EXPECT_TRUE(judge(MakeNode(calls, {L"x", {}}), Box(calls, L"C:\\..")));
  EXPECT_THAT(calls.made, IsEmpty());
}

}  // namespace
}  // namespace Zq::Gantry::Security
