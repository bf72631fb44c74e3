#include "security/access/rule_validators.h"

#include <windows.h>

#include <gmock/gmock.h>
#include <winstring.h>

#include <limits>
#include <stdexcept>
#include <string>

#include "import_patch.h"
#include "security/access/rule_validators_fixture.h"

namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using namespace TestSupport;

using NumericRangeRule = RuleValidatorTest;

TEST_F(NumericRangeRule, DropsTheFractionAndIncludesBothLimits) {
  EXPECT_FALSE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 0.5));
  EXPECT_TRUE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 1.0));
  EXPECT_TRUE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 10.9));
  EXPECT_FALSE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 11.0));
  EXPECT_TRUE(InRange({{L"min", L"12 apples"}}, 12.0));
}

TEST_F(NumericRangeRule, AcceptsEveryNumberWithoutLimits) {
  EXPECT_TRUE(InRange({}, -1e300));
  EXPECT_TRUE(InRange({{L"step", L"x"}}, 1e300));
  EXPECT_FALSE(InRange({}, std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(NumericRangeRule, HasNoLimitsWithoutAnAttributeMap) {
  const XmlNodeReference node = MakeNode(calls, {L"", {{L"min", L"5"}}, /*hasAttributeMap=*/false});
  EXPECT_TRUE(RuleValidators.at(L"numeric_range")(node, Box(calls, 1.0)));
}

TEST_F(NumericRangeRule, AcceptsEveryNonNullValueForANullNode) {
  EXPECT_TRUE(RuleValidators.at(L"numeric_range")(nullptr, Box(calls, L"no number")));
  EXPECT_THAT(calls.made, IsEmpty());
}

TEST_F(NumericRangeRule, RefusesOtherTypesBeforeReadingLimits) {
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

TEST_F(NumericRangeRule, RefusesTheValueWhenACallFails) {
  for (const char* call : {"Attributes", "GetNamedItem min", "GetNamedItem max", "as IXmlAttribute",
                           "Value", "Boxed"}) {
    calls.failures = {{call, E_FAIL}};
    EXPECT_FALSE(InRange({{L"min", L"1"}, {L"max", L"10"}}, 5.0)) << call;
  }
}

TEST_F(NumericRangeRule, RefusesALimitWithoutANumberAndThrowsForOneBeyond32Bits) {
  EXPECT_FALSE(InRange({{L"min", L"one"}}, 5.0));
  EXPECT_FALSE(InRange({{L"max", L""}}, 5.0));
  EXPECT_THROW(InRange({{L"min", L"-2147483649"}}, 5.0), std::out_of_range);
  EXPECT_THROW(InRange({{L"max", L"2147483648"}}, 5.0), std::out_of_range);
  EXPECT_TRUE(InRange({{L"min", L"-2147483648"}, {L"max", L"2147483647"}}, 5.0));
}

TEST_F(NumericRangeRule, RefusesTheValueWhenAnAttributeNameCannotBeMade) {
  const RuleJudge judge = RuleValidators.at(L"numeric_range");
  const Standin::ImportPatch create(
      "WindowsCreateString", +[](PCNZWCH, UINT32, HSTRING*) -> HRESULT { return E_FAIL; });
  EXPECT_FALSE(judge(MakeNode(calls, {}), Box(calls, 5.0)));
}

}  // namespace
}  // namespace Zq::Gantry::Security
