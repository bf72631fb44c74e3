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

TEST_F(CheckRundll32Arguments, LibraryCommaEntryTestsTheLibraryAlone) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll,Entry"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRundll32Arguments, TheFirstCommaCuts) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll,Entry,More"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRundll32Arguments, ALibraryWithoutCommaIsTestedWhole) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRundll32Arguments, FurtherArgumentsAreNotLookedAt) {
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll,Entry D:\\bad.dll"));
  EXPECT_TRUE(Check(L"C:\\Windows\\good.dll D:\\bad.dll,Entry"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

TEST_F(CheckRundll32Arguments, AnUntrustedOrUnprotectedLibraryIsRefused) {
  EXPECT_FALSE(Check(L"D:\\Users\\bad.dll,Entry"));
  files_.trust.embedded.clear();
  EXPECT_FALSE(Check(L"C:\\Windows\\good.dll,Entry"));
}

TEST_F(CheckRundll32Arguments, NoArgumentPasses) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(Check(L""));
  EXPECT_TRUE(Check(L"  "));
}

TEST_F(CheckRundll32Arguments, AnEmptyArgumentPasses) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(Check(L"\"\""));
  EXPECT_TRUE(Check(L"\"\" D:\\bad.dll,Entry"));
}

TEST_F(CheckRundll32Arguments, ACommaInFrontNamesNoLibraryAndIsRefused) {
  EXPECT_FALSE(Check(L",Entry"));
  EXPECT_FALSE(Check(L","));
}

TEST_F(CheckRundll32Arguments, ASwitchIsTakenForALibrary) {
  EXPECT_FALSE(Check(L"/d C:\\Windows\\good.dll,Entry"));
  EXPECT_THAT(Verified(), ElementsAre(L"/d"));
}

TEST_F(CheckRundll32Arguments, AQuotedPathWithBlanksIsOneLibrary) {
  EXPECT_TRUE(Check(L"\"C:\\Program Files\\a b.dll\",Entry"));
  EXPECT_THAT(Verified(), ElementsAre(L"C:\\Program Files\\a b.dll"));
}

TEST_F(CheckRundll32Arguments, AQuotedCommaCutsThePath) {
  EXPECT_TRUE(Check(L"\"C:\\Windows\\good.dll,D:\\bad.dll\",Entry"));
  EXPECT_THAT(Verified(), ElementsAre(kGood));
}

}  // namespace
}  // namespace Zq::Gantry::Security
