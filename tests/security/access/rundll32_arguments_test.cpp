#include "security/access/tool_launch.h"

#include <gmock/gmock.h>

#include "security/access/tool_arguments_fixture.h"

namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using TestSupport::kGood;

class CheckRundll32Arguments : public TestSupport::ToolArguments {
 protected:
  bool Check(const std::wstring& line) { return Security::CheckRundll32Arguments(line); }
};

TEST_F(CheckRundll32Arguments, ChecksTheLibraryBeforeTheComma) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll,Entry"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRundll32Arguments, CutsAtTheFirstComma) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll,Entry,More"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRundll32Arguments, ChecksAWholeNameWithoutAComma) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRundll32Arguments, ChecksTheFirstArgumentOnly) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll,Entry D:\\bad.dll"));
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll D:\\bad.dll,Entry"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRundll32Arguments, RefusesAnUntrustedOrUnprotectedLibrary) {
  EXPECT_FALSE(Check(L"D:\\Users\\bad.dll,Entry"));
  files_.trust.embedded.clear();
  EXPECT_FALSE(Check(L"C:\\Windows\\good.dll,Entry"));
}

TEST_F(CheckRundll32Arguments, AcceptsAnEmptyLine) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(Check(L""));
  EXPECT_TRUE(Check(L"  "));
}

TEST_F(CheckRundll32Arguments, AcceptsAnEmptyArgument) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(Check(L"\"\""));
  EXPECT_TRUE(Check(L"\"\" D:\\bad.dll,Entry"));
}

TEST_F(CheckRundll32Arguments, RefusesALineThatBeginsWithAComma) {
  EXPECT_FALSE(Check(L",Entry"));
  EXPECT_FALSE(Check(L","));
}

TEST_F(CheckRundll32Arguments, TakesASwitchForALibrary) {
  EXPECT_FALSE(Check(L"/d C:\\Windows\\good.dll,Entry"));
  EXPECT_THAT(Verified(), ElementsAre(L"/d"));
}

TEST_F(CheckRundll32Arguments, TakesAQuotedPathWithBlanksAsOneLibrary) {
  EXPECT_TRUE(Check(L"\"C:\\Program Files\\a b.dll\",Entry"));
  EXPECT_THAT(Verified(), ElementsAre(L"C:\\Program Files\\a b.dll"));
}

TEST_F(CheckRundll32Arguments, CutsThePathAtAQuotedComma) {
  EXPECT_TRUE(Check(L"\"C:\\Windows\\good.dll,D:\\bad.dll\",Entry"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

}  // namespace
}  // namespace Zq::Gantry::Security
