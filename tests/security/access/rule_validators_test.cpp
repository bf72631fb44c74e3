#include "security/access/rule_validators.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <winstring.h>

#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "import_patch.h"
#include "security/access/rule_validators_fixture.h"

// The table, and what its judges have in common.
namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace TestSupport;

constexpr const wchar_t* kListKinds[] = {L"contained_in_list", L"begins_with_from_list"};
constexpr const wchar_t* kTextKinds[] = {L"regex", L"contained_in_list", L"begins_with_from_list",
                                         L"begins_with_from_list_with_env_vars"};

using RuleValidatorsTable = RuleValidatorTest;

TEST_F(RuleValidatorsTable, HoldsTheSixKindsInCharacterOrder) {
  std::vector<std::wstring> kinds;
  for (const auto& [kind, judge] : RuleValidators) kinds.emplace_back(kind.View());
  EXPECT_THAT(kinds, ElementsAre(L"begins_with_from_list", L"begins_with_from_list_with_env_vars",
                                 L"contained_in_list", L"none", L"numeric_range", L"regex"));
  EXPECT_EQ(RuleValidators.count(L"Regex"), 0U);
}

TEST_F(RuleValidatorsTable, CannotBeChanged) {
  EXPECT_TRUE(std::is_const_v<std::remove_reference_t<decltype(RuleValidators)>>);
  EXPECT_TRUE(std::is_const_v<std::remove_reference_t<decltype((RuleValidators.begin()->second))>>);
}

TEST_F(RuleValidatorsTable, UsesReferencesAndTextsOfOnePointer) {
  EXPECT_EQ(sizeof(RuntimeText), sizeof(HSTRING));
  EXPECT_EQ(sizeof(XmlNodeReference), sizeof(void*));
  EXPECT_EQ(sizeof(ValueReference), sizeof(void*));
  EXPECT_TRUE(std::is_standard_layout_v<RuntimeText>);
  EXPECT_TRUE(std::is_standard_layout_v<ValueReference>);
}

using RuleValidatorJudges = RuleValidatorTest;

TEST_F(RuleValidatorJudges, RefuseANullValueBeforeReadingTheRule) {
  for (const auto& [kind, judge] : RuleValidators) {
    if (kind == L"none") continue;
    EXPECT_FALSE(judge(MakeNode(calls, {L"", {}}), nullptr));
  }
  EXPECT_FALSE(RuleValidators.at(L"numeric_range")(nullptr, nullptr));
  EXPECT_THAT(calls.made, IsEmpty());
}

TEST_F(RuleValidatorJudges, ReadTheRuleBeforeTheValue) {
  for (const wchar_t* kind : {L"regex", L"begins_with_from_list"}) {
    calls.made.clear();
    Judge(kind, L"x", L"x");
    EXPECT_THAT(calls.made, ElementsAre("as IXmlNodeSerializer", "InnerText", "Boxed"));
  }
  calls.made.clear();
  Judge(L"contained_in_list", L"x", L"x");
  EXPECT_THAT(calls.made, ElementsAre("as IXmlNodeSerializer", "InnerText", "Type", "Boxed"));
}

TEST_F(RuleValidatorJudges, RefuseANullNodeWhereTheRuleIsText) {
  for (const wchar_t* kind : kTextKinds) {
    EXPECT_FALSE(RuleValidators.at(kind)(nullptr, Box(calls, L"")));
  }
  EXPECT_THAT(calls.made, IsEmpty());
}

TEST_F(RuleValidatorJudges, RefuseANodeWithoutText) {
  for (const wchar_t* kind : kTextKinds) {
    EXPECT_FALSE(RuleValidators.at(kind)(MakeNodeWithoutText(calls), Box(calls, L"")));
  }
}

TEST_F(RuleValidatorJudges, RefuseTheValueWhenACallFails) {
  for (const char* call : {"as IXmlNodeSerializer", "InnerText", "Boxed"}) {
    calls.failures = {{call, E_ACCESSDENIED}};
    for (const wchar_t* kind : kTextKinds) EXPECT_FALSE(Judge(kind, L",,x", L"x")) << call;
  }
  calls.failures = {{"Type", E_FAIL}};
  EXPECT_FALSE(Judge(L"contained_in_list", L"x", L"x"));
}

TEST_F(RuleValidatorJudges, RefuseTheValueWhenACallReturnsNull) {
  calls.returningNull = {"as IXmlNodeSerializer", "as IXmlAttribute"};
  for (const wchar_t* kind : kTextKinds) EXPECT_FALSE(Judge(kind, L",,x", L"x"));
  EXPECT_FALSE(InRange({{L"min", L"1"}}, 5.0));
}

TEST_F(RuleValidatorJudges, AcceptEverySuccessCode) {
  calls.failures = {{"Type", S_FALSE}, {"Boxed", S_FALSE}};
  EXPECT_TRUE(Judge(L"contained_in_list", L"3", 3.0));
  EXPECT_TRUE(InRange({{L"max", L"3"}}, 3.0));
}

TEST_F(RuleValidatorJudges, ThrowBadAllocWhenACallRunsOutOfMemory) {
  for (const char* call : {"as IXmlNodeSerializer", "InnerText", "Boxed"}) {
    calls.failures = {{call, E_OUTOFMEMORY}};
    for (const wchar_t* kind : kTextKinds) EXPECT_THROW(Judge(kind, L"x", L"x"), std::bad_alloc);
  }
  calls.failures = {{"Attributes", E_OUTOFMEMORY}};
  EXPECT_THROW(InRange({}, 1.0), std::bad_alloc);
}

TEST_F(RuleValidatorJudges, LetBadAllocPropagate) {
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

TEST_F(RuleValidatorJudges, RefuseOtherBoxedTypesInStringRules) {
  for (const wchar_t* kind :
       {L"regex", L"begins_with_from_list", L"begins_with_from_list_with_env_vars"}) {
    EXPECT_FALSE(Judge(kind, L".*,,3,true", 3.0));
    EXPECT_FALSE(Judge(kind, L".*,,3,true", true));
    EXPECT_FALSE(RuleValidators.at(kind)(MakeNode(calls, {L".*,,", {}}), BoxInt32(calls)));
    EXPECT_FALSE(RuleValidators.at(kind)(MakeNode(calls, {L".*,,", {}}), MakePlainObject(calls)));
  }
}

TEST_F(RuleValidatorJudges, RefuseAClimbingPath) {
  const std::wstring path = L"C:\\a\\..\\b";
  for (const wchar_t* kind : kListKinds) EXPECT_FALSE(Judge(kind, path, path));
  EXPECT_FALSE(Judge(L"regex", L".*", path));
  EXPECT_FALSE(Judge(L"regex", L".*", L"%TEMP%\\..\\x"));
  EXPECT_FALSE(Judge(L"begins_with_from_list", L"one,,two", L"%TEMP%\\..\\x"));
}

TEST_F(RuleValidatorJudges, CompareARelativePathWithTwoPointsLikeAnyText) {
  EXPECT_TRUE(Judge(L"regex", L"\\.\\.[\\\\]b", L"..\\b"));
  EXPECT_TRUE(Judge(L"contained_in_list", L"a,..\\b", L"..\\b"));
  EXPECT_TRUE(Judge(L"begins_with_from_list", L"..", L"..\\b"));
  EXPECT_TRUE(Judge(L"contained_in_list", L"from 1..9", L"from 1..9"));
  EXPECT_FALSE(Judge(L"contained_in_list", L"a", L"..\\b"));
}

using NoneRule = RuleValidatorTest;

TEST_F(NoneRule, AcceptsEveryValueWithoutReadingIt) {
  const RuleJudge judge = RuleValidators.at(L"none");
  EXPECT_TRUE(judge(nullptr, nullptr));
  EXPECT_TRUE(judge(MakeNode(calls, {L"x", {}}), Box(calls, L"C:\\..")));
  EXPECT_THAT(calls.made, IsEmpty());
}

}  // namespace
}  // namespace Zq::Gantry::Security
