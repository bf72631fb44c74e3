#include "security/access/rule_validators.h"

#include <gmock/gmock.h>

#include <string>

#include "security/access/rule_validators_fixture.h"

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using namespace TestSupport;

class BeginsWithFromExpandedListRule : public RuleValidatorTest {
 protected:
  // Each expansion is logged.
  BeginsWithFromExpandedListRule() { isQuiet = false; }

  bool Passes(const std::wstring& list, const std::wstring& value) {
    return Judge(L"begins_with_from_list_with_env_vars", list, value);
  }
};

TEST_F(BeginsWithFromExpandedListRule, ExpandsValueAndItems) {
  const ScopedVariable variable(L"WATTLEAF_RULE", L"C:\\Rules");
  EXPECT_TRUE(Passes(L"C:\\other,%WATTLEAF_RULE%\\", L"c:\\rules\\x"));
  EXPECT_TRUE(Passes(L"C:\\Rules\\x", L"%WATTLEAF_RULE%\\x\\y"));
  EXPECT_FALSE(Passes(L"C:\\Rules\\x\\z", L"%WATTLEAF_RULE%\\x\\y"));
}

TEST_F(BeginsWithFromExpandedListRule, JudgesAClimbingPathByItsExpansion) {
  EXPECT_FALSE(Passes(L"C:\\Rules", L"C:\\Rules\\..\\other"));
  EXPECT_TRUE(Passes(L"C:\\other", L"C:\\Rules\\..\\other"));
}

TEST_F(BeginsWithFromExpandedListRule, RefusesTwoPointsThatRemainAfterTheExpansion) {
  EXPECT_FALSE(Passes(L"C:\\a..b,,", L"C:\\a..b"));
  EXPECT_TRUE(Passes(L"C:\\a.b", L"C:\\a.b"));
}

TEST_F(BeginsWithFromExpandedListRule, AcceptsEveryValueForAnEmptyItem) {
  EXPECT_TRUE(Passes(L"C:\\x,,", L"D:\\y"));
}

TEST_F(BeginsWithFromExpandedListRule, AcceptsEveryValueForAnItemTooLongForAPath) {
  const std::wstring tooLong = L"C:\\" + std::wstring(10'000'000, L'a');
  EXPECT_TRUE(Passes(L"C:\\x," + tooLong, L"D:\\y"));
}

TEST_F(BeginsWithFromExpandedListRule, AcceptsAValueTooLongForAPathOnlyWithSuchAnItem) {
  const std::wstring tooLong = L"C:\\x\\" + std::wstring(1'000'000, L'a');
  EXPECT_FALSE(Passes(L"C:\\x", tooLong));
  EXPECT_TRUE(Passes(L"C:\\x," + tooLong, tooLong));
}

TEST_F(BeginsWithFromExpandedListRule, ReadsAValueUpToItsFirstNullCharacter) {
  EXPECT_TRUE(Passes(L"C:\\x", L"C:\\x\0\\..\\y"s));
}

TEST_F(BeginsWithFromExpandedListRule, LogsTheExpansionsOnly) {
  Passes(L"C:\\x", L"C:\\y");
  EXPECT_THAT(log.Records(), ElementsAre(Info(L"ExpandEnvironmentStrings: [C:\\y] [C:\\y]"),
                                         Info(L"GetFullPathName: [C:\\y]"),
                                         Info(L"ExpandEnvironmentStrings: [C:\\x] [C:\\x]"),
                                         Info(L"GetFullPathName: [C:\\x]")));
}

TEST_F(BeginsWithFromExpandedListRule, ExpandsAnEmptyValueLikeAnyOther) {
  EXPECT_FALSE(Passes(L"", L""));
  ASSERT_FALSE(log.Records().empty());
  EXPECT_EQ(log.Records().front(), Info(L"ExpandEnvironmentStrings: [] []"));
}

}  // namespace
}  // namespace Zq::Gantry::Security
