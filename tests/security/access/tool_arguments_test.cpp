#include "security/access/tool_launch.h"

#include <windows.h>

#include <shellapi.h>

#include <gmock/gmock.h>

#include "security/access/judged_files.h"

namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::JudgedFiles;

constexpr wchar_t kGood[] = L"C:\\Windows\\good.dll";

/// Both checks, on files that are all signed for the service; only their places differ.
class ToolArguments : public testing::Test {
 protected:
  ToolArguments() { files_.SignAllForTheService(); }

  std::vector<std::wstring> Asked() const { return files_.VerifiedFiles(); }

  JudgedFiles files_;
};

using Regsvr32Arguments = ToolArguments;
using Rundll32Arguments = ToolArguments;

}  // namespace

TEST_F(Regsvr32Arguments, ATrustedFileInAProtectedPlacePasses) {
  EXPECT_TRUE(CheckRegsvr32Arguments(kGood));
  EXPECT_THAT(Asked(), ElementsAre(kGood));
}

TEST_F(Regsvr32Arguments, ATrustedFileElsewhereIsRefused) {
  EXPECT_FALSE(CheckRegsvr32Arguments(L"D:\\Users\\bad.dll"));
}

TEST_F(Regsvr32Arguments, AnUntrustedFileIsRefusedWithoutALookAtItsPlace) {
  files_.trust.embedded.clear();
  EXPECT_FALSE(CheckRegsvr32Arguments(kGood));
  EXPECT_TRUE(files_.rpc.Questions().empty());
}

TEST_F(Regsvr32Arguments, AFileSignedByAnotherKeyOrUnderAnUnknownRootIsRefused) {
  files_.SignAll(kVerified, "30 0a");
  EXPECT_FALSE(CheckRegsvr32Arguments(kGood));
  files_.SignAll(kUntrustedRoot, ServiceTrustedKeys.front());
  EXPECT_FALSE(CheckRegsvr32Arguments(kGood));
}

TEST_F(Regsvr32Arguments, AKeyOfTheExtendedListAloneIsRefused) {
  files_.SignAll(kVerified, PublicKeyPool.at(26));
  EXPECT_FALSE(CheckRegsvr32Arguments(kGood));
  files_.SignAll(kVerified, PublicKeyPool.at(24));
  EXPECT_TRUE(CheckRegsvr32Arguments(kGood));
}

TEST_F(Regsvr32Arguments, OnlySwitchesPass) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(CheckRegsvr32Arguments(L"/s"));
  EXPECT_TRUE(CheckRegsvr32Arguments(L"/s /u \"/i:some text\" /"));
  EXPECT_THAT(Asked(), IsEmpty());
}

TEST_F(Regsvr32Arguments, NoArgumentPasses) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(CheckRegsvr32Arguments(L""));
  EXPECT_TRUE(CheckRegsvr32Arguments(L"   \t"));
}

TEST_F(Regsvr32Arguments, SwitchesBeforeTheFileAreSkipped) {
  EXPECT_TRUE(CheckRegsvr32Arguments(L"/s /n /i:x C:\\Windows\\good.dll"));
  EXPECT_THAT(Asked(), ElementsAre(kGood));
}

TEST_F(Regsvr32Arguments, LaterFilesAreNotLookedAt) {
  EXPECT_TRUE(CheckRegsvr32Arguments(L"C:\\Windows\\good.dll D:\\bad.dll /s"));
  EXPECT_THAT(Asked(), ElementsAre(kGood));
  EXPECT_FALSE(CheckRegsvr32Arguments(L"D:\\bad.dll C:\\Windows\\good.dll"));
}

TEST_F(Regsvr32Arguments, AQuotedPathWithBlanksIsOneFile) {
  EXPECT_TRUE(CheckRegsvr32Arguments(L"/s \"C:\\Program Files\\A B\\c.dll\""));
  EXPECT_THAT(Asked(), ElementsAre(L"C:\\Program Files\\A B\\c.dll"));
}

TEST_F(Regsvr32Arguments, AnUnquotedPathEndsAtItsBlank) {
  EXPECT_FALSE(CheckRegsvr32Arguments(L"C:\\Program Files\\c.dll"));
  EXPECT_THAT(Asked(), ElementsAre(L"C:\\Program"));
}

TEST_F(Regsvr32Arguments, AQuotedSwitchIsASwitchAndADashIsNone) {
  EXPECT_TRUE(CheckRegsvr32Arguments(L"\"/s\""));
  EXPECT_FALSE(CheckRegsvr32Arguments(L"-s"));
  EXPECT_THAT(Asked(), ElementsAre(L"-s"));
}

TEST_F(Regsvr32Arguments, AnEmptyArgumentIsAFileWithoutName) {
  EXPECT_FALSE(CheckRegsvr32Arguments(L"\"\""));
  EXPECT_FALSE(CheckRegsvr32Arguments(L"\"\" C:\\Windows\\good.dll"));
}

TEST_F(Regsvr32Arguments, ACommaIsPartOfTheName) {
  EXPECT_TRUE(CheckRegsvr32Arguments(L"C:\\Windows\\good,Entry.dll"));
  EXPECT_THAT(Asked(), ElementsAre(L"C:\\Windows\\good,Entry.dll"));
}

TEST_F(Rundll32Arguments, LibraryCommaEntryTestsTheLibraryAlone) {
  EXPECT_TRUE(CheckRundll32Arguments(L"C:\\Windows\\good.dll,Entry"));
  EXPECT_THAT(Asked(), ElementsAre(kGood));
}

TEST_F(Rundll32Arguments, TheFirstCommaCuts) {
  EXPECT_TRUE(CheckRundll32Arguments(L"C:\\Windows\\good.dll,Entry,More"));
  EXPECT_THAT(Asked(), ElementsAre(kGood));
}

TEST_F(Rundll32Arguments, ALibraryWithoutCommaIsTestedWhole) {
  EXPECT_TRUE(CheckRundll32Arguments(L"C:\\Windows\\good.dll"));
  EXPECT_THAT(Asked(), ElementsAre(kGood));
}

TEST_F(Rundll32Arguments, FurtherArgumentsAreNotLookedAt) {
  EXPECT_TRUE(CheckRundll32Arguments(L"C:\\Windows\\good.dll,Entry D:\\bad.dll"));
  EXPECT_TRUE(CheckRundll32Arguments(L"C:\\Windows\\good.dll D:\\bad.dll,Entry"));
  EXPECT_THAT(Asked(), ElementsAre(kGood));
}

TEST_F(Rundll32Arguments, AnUntrustedOrUnprotectedLibraryIsRefused) {
  EXPECT_FALSE(CheckRundll32Arguments(L"D:\\Users\\bad.dll,Entry"));
  files_.trust.embedded.clear();
  EXPECT_FALSE(CheckRundll32Arguments(L"C:\\Windows\\good.dll,Entry"));
}

TEST_F(Rundll32Arguments, NoArgumentPasses) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(CheckRundll32Arguments(L""));
  EXPECT_TRUE(CheckRundll32Arguments(L"  "));
}

TEST_F(Rundll32Arguments, AnEmptyArgumentPasses) {
  files_.trust.embedded.clear();
  EXPECT_TRUE(CheckRundll32Arguments(L"\"\""));
  EXPECT_TRUE(CheckRundll32Arguments(L"\"\" D:\\bad.dll,Entry"));
}

TEST_F(Rundll32Arguments, ACommaInFrontNamesNoLibraryAndIsRefused) {
  EXPECT_FALSE(CheckRundll32Arguments(L",Entry"));
  EXPECT_FALSE(CheckRundll32Arguments(L","));
}

TEST_F(Rundll32Arguments, ASwitchIsTakenForALibrary) {
  EXPECT_FALSE(CheckRundll32Arguments(L"/d C:\\Windows\\good.dll,Entry"));
  EXPECT_THAT(Asked(), ElementsAre(L"/d"));
}

TEST_F(Rundll32Arguments, AQuotedPathWithBlanksIsOneLibrary) {
  EXPECT_TRUE(CheckRundll32Arguments(L"\"C:\\Program Files\\a b.dll\",Entry"));
  EXPECT_THAT(Asked(), ElementsAre(L"C:\\Program Files\\a b.dll"));
}

TEST_F(Rundll32Arguments, AQuotedCommaCutsThePath) {
  EXPECT_TRUE(CheckRundll32Arguments(L"\"C:\\Windows\\good.dll,D:\\bad.dll\",Entry"));
  EXPECT_THAT(Asked(), ElementsAre(kGood));
}

TEST_F(ToolArguments, AsksTheSignatureOfTheTextAndThePlaceOfItsExpansion) {
  EXPECT_TRUE(CheckRegsvr32Arguments(L"%windir%\\good.dll"));
  EXPECT_TRUE(CheckRundll32Arguments(L"%windir%\\other.dll,Entry"));
  EXPECT_THAT(Asked(), ElementsAre(L"%windir%\\good.dll", L"%windir%\\other.dll"));
}

TEST_F(ToolArguments, TheFirstWordIsJudgedThoughItStandsWhereAProgramWould) {
  EXPECT_FALSE(CheckRegsvr32Arguments(L"regsvr32.exe"));
  EXPECT_THAT(Asked(), ElementsAre(L"regsvr32.exe"));
}

namespace {

std::vector<std::wstring> splitTexts;
std::vector<HLOCAL> freedBlocks;
HLOCAL handedOut = nullptr;
decltype(&CommandLineToArgvW) realSplit = nullptr;
decltype(&LocalFree) realFree = nullptr;

LPWSTR* WINAPI RecordSplit(LPCWSTR text, int* count) {
  splitTexts.push_back(text);
  LPWSTR* const words = realSplit(text, count);
  handedOut = words;
  return words;
}

LPWSTR* WINAPI FailSplit(LPCWSTR, int* count) {
  *count = 5;
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

LPWSTR* WINAPI SplitIntoNothing(LPCWSTR text, int* count) {
  LPWSTR* const words = realSplit(text, count);
  *count = 0;
  return words;
}

HLOCAL WINAPI RecordFree(HLOCAL block) {
  freedBlocks.push_back(block);
  return realFree(block);
}

}  // namespace

TEST_F(ToolArguments, AreSplitBehindAWordForTheProgramAndGivenBackOnce) {
  const Standin::ImportPatch split("CommandLineToArgvW", &RecordSplit);
  const Standin::ImportPatch free("LocalFree", &RecordFree);
  realSplit = split.Original<std::remove_pointer_t<decltype(&CommandLineToArgvW)>>();
  realFree = free.Original<std::remove_pointer_t<decltype(&LocalFree)>>();
  using Check = bool (*)(const std::wstring&);
  for (const Check check : {Check{CheckRegsvr32Arguments}, Check{CheckRundll32Arguments}}) {
    for (const wchar_t* line : {L"", L"/s", L"C:\\Windows\\good.dll", L"D:\\bad.dll"}) {
      splitTexts.clear();
      freedBlocks.clear();
      check(line);
      EXPECT_THAT(splitTexts, ElementsAre(std::wstring(L"test.exe ") + line));
      EXPECT_EQ(std::count(freedBlocks.begin(), freedBlocks.end(), handedOut), 1) << line;
    }
  }
}

TEST_F(ToolArguments, ALineThatCannotBeSplitIsRefused) {
  const Standin::ImportPatch split("CommandLineToArgvW", &FailSplit);
  for (const wchar_t* line : {L"", L"/s", kGood}) {
    EXPECT_FALSE(CheckRegsvr32Arguments(line));
    EXPECT_FALSE(CheckRundll32Arguments(line));
  }
  EXPECT_THAT(Asked(), IsEmpty());
}

TEST_F(ToolArguments, ALineThatIsSplitIntoNothingIsRefused) {
  const Standin::ImportPatch split("CommandLineToArgvW", &SplitIntoNothing);
  realSplit = split.Original<std::remove_pointer_t<decltype(&CommandLineToArgvW)>>();
  for (const wchar_t* line : {L"", L"/s", kGood}) {
    EXPECT_FALSE(CheckRegsvr32Arguments(line));
    EXPECT_FALSE(CheckRundll32Arguments(line));
  }
}

TEST_F(ToolArguments, HostileLinesEndAndAreRefused) {
  const std::wstring longText(1'000'000, L'\\');
  EXPECT_FALSE(CheckRegsvr32Arguments(longText));
  EXPECT_FALSE(CheckRundll32Arguments(longText));
  EXPECT_FALSE(CheckRegsvr32Arguments(longText + L'"'));
  EXPECT_FALSE(CheckRundll32Arguments(std::wstring(1'000'000, L',')));
  EXPECT_FALSE(CheckRegsvr32Arguments(L"\xD800\xDFFF\xDC00"));
  EXPECT_FALSE(CheckRundll32Arguments(L"\xD800,\xDC00"));
}

TEST_F(ToolArguments, AZeroEndsTheLine) {
  EXPECT_TRUE(CheckRegsvr32Arguments(std::wstring(L"/s\0D:\\bad.dll", 13)));
}

}  // namespace Zq::Gantry::Security
