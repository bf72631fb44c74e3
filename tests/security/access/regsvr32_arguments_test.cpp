#include "security/access/tool_launch.h"

#include <gmock/gmock.h>

#include "security/access/tool_arguments_fixture.h"

namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::kGood;

class CheckRegsvr32Arguments : public TestSupport::ToolArguments {
 protected:
  bool Check(const std::wstring& line) { return Security::CheckRegsvr32Arguments(line); }
};

TEST_F(CheckRegsvr32Arguments, AcceptsATrustedFileInAProtectedPlace) {
  EXPECT_TRUE(Check(kGood));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRegsvr32Arguments, RefusesATrustedFileElsewhere) {
  EXPECT_FALSE(Check(L"D:\\Users\\bad.dll"));
}

TEST_F(CheckRegsvr32Arguments, RefusesAnUntrustedFileWithoutCheckingItsPlace) {
  files_.trust.embedded.clear();
  EXPECT_FALSE(Check(kGood));
  EXPECT_TRUE(files_.rpc.Questions().empty());
}

TEST_F(CheckRegsvr32Arguments, RefusesAnotherKeyAndAnUntrustedRoot) {
  files_.SignAll(kVerified, "30 0a");
  EXPECT_FALSE(Check(kGood));
  files_.SignAll(kUntrustedRoot, ServiceTrustedKeys.front());
  EXPECT_FALSE(Check(kGood));
}

TEST_F(CheckRegsvr32Arguments, RefusesAKeyThatOnlyTheExtendedListHolds) {
  files_.SignAll(kVerified, PublicKeyPool.at(26));
  EXPECT_FALSE(Check(kGood));
  files_.SignAll(kVerified, PublicKeyPool.at(24));
  EXPECT_TRUE(Check(kGood));
}

TEST_F(CheckRegsvr32Arguments, AcceptsSwitchesWithoutAFile) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(Check(L"/s"));
  EXPECT_TRUE(Check(L"/s /u \"/i:some text\" /"));
  EXPECT_THAT(Verified(), IsEmpty());
}

TEST_F(CheckRegsvr32Arguments, AcceptsAnEmptyLine) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(Check(L""));
  EXPECT_TRUE(Check(L"   \t"));
}

TEST_F(CheckRegsvr32Arguments, SkipsSwitchesBeforeTheFile) {
  EXPECT_TRUE(Check(L"/s /n /i:x C:\\Windows\\good.dll"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRegsvr32Arguments, ChecksTheFirstFileOnly) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll D:\\bad.dll /s"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
  EXPECT_FALSE(Check(L"D:\\bad.dll C:\\Windows\\good.dll"));
}

TEST_F(CheckRegsvr32Arguments, TakesAQuotedPathWithBlanksAsOneFile) {
  EXPECT_TRUE(Check(L"/s \"C:\\Program Files\\A B\\c.dll\""));
  EXPECT_THAT(Verified(), ElementsAre(L"C:\\Program Files\\A B\\c.dll"));
}

TEST_F(CheckRegsvr32Arguments, EndsAnUnquotedPathAtItsBlank) {
  EXPECT_FALSE(Check(L"C:\\Program Files\\c.dll"));
  EXPECT_THAT(Verified(), ElementsAre(L"C:\\Program"));
}

TEST_F(CheckRegsvr32Arguments, TakesAQuotedSwitchAsASwitchAndADashAsAFile) {
  EXPECT_TRUE(Check(L"\"/s\""));
  EXPECT_FALSE(Check(L"-s"));
  EXPECT_THAT(Verified(), ElementsAre(L"-s"));
}

TEST_F(CheckRegsvr32Arguments, RefusesAnEmptyArgument) {
  EXPECT_FALSE(Check(L"\"\""));
  EXPECT_FALSE(Check(L"\"\" C:\\Windows\\good.dll"));
}

TEST_F(CheckRegsvr32Arguments, KeepsACommaInTheName) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good,Entry.dll"));
  EXPECT_THAT(Verified(), ElementsAre(L"C:\\Windows\\good,Entry.dll"));
}

}  // namespace
}  // namespace Zq::Gantry::Security
