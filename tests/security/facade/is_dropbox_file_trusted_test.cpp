#include "security/facade/zq_authenticode_facade.h"

#include <windows.h>

#include <wincrypt.h>

#include <gmock/gmock.h>

#include <new>
#include <stdexcept>

#include "security/access/judged_files.h"
#include "security/trust/zq_authenticode_helper.h"
#include "support/temp_folder.h"

namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;
using TestSupport::Error;
using TestSupport::Info;
using TestSupport::JudgedFiles;
using TestSupport::kElsewhere;
using TestSupport::kProtected;

// The text of the subject of each signature, in the documented form. The system under the tests may
// quote a comma although the caller's flags forbid it.
std::vector<std::wstring> subjects;
std::size_t namesRead = 0;

DWORD WINAPI FakeNameToStr(DWORD, PCERT_NAME_BLOB, DWORD, LPWSTR text, DWORD chars) {
  // For each signature the subject's name is read and then the issuer's.
  const std::wstring& subject = subjects.at(namesRead++ / 2 % subjects.size());
  if (chars <= subject.size()) return 0;
  subject.copy(text, subject.size());
  text[subject.size()] = L'\0';
  return static_cast<DWORD>(subject.size() + 1);
}

class IsDropboxFileTrusted : public testing::Test {
 protected:
  IsDropboxFileTrusted() {
    subjects = {L"CN=X"};
    namesRead = 0;
  }

  void SignWithSubject(std::uint32_t verdict, const wchar_t* subject) {
    files_.SignAll(verdict, "30 0a");
    // The size of the buffer for the text follows from the length of this name.
    files_.trust.embedded.front().subject = L"CN=A name that is long enough for every one of them";
    subjects = {subject};
  }

  JudgedFiles files_;
  Standin::ImportPatch names_{"CertNameToStrW", &FakeNameToStr};
  ZQAuthenticodeFacade facade_;
};

TEST_F(IsDropboxFileTrusted, AcceptsTheCommonNameInAProtectedPlace) {
  SignWithSubject(kVerified, L"CN=Dropbox, Inc\r\nO=Other");
  EXPECT_TRUE(facade_.IsDropboxFileTrusted(kProtected));
  EXPECT_EQ(files_.log.Records().front(), Info(L"Starting validation of Dropbox file."));
}

TEST_F(IsDropboxFileTrusted, RefusesOtherPlaces) {
  SignWithSubject(kVerified, L"CN=Dropbox, Inc");
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(kElsewhere));
}

TEST_F(IsDropboxFileTrusted, RefusesTheOrganizationAlone) {
  SignWithSubject(kVerified, L"CN=Other\r\nO=Dropbox, Inc");
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(kProtected));
  EXPECT_TRUE(files_.NoPlaceWasChecked());
}

TEST_F(IsDropboxFileTrusted, LogsAndRefusesAFileThatTheSystemDoesNotAccept) {
  SignWithSubject(kUntrustedRoot, L"CN=Dropbox, Inc");
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(kProtected));
  EXPECT_THAT(files_.log.Records(), ElementsAre(Info(L"Starting validation of Dropbox file."),
                                                Info(L"Subject = CN=Dropbox, Inc"),
                                                Error(L"Dropbox file is not trusted by windows.")));
}

TEST_F(IsDropboxFileTrusted, AcceptsNameAndVerdictFromDifferentSignatures) {
  SignWithSubject(kVerified, L"CN=Other");
  files_.trust.embedded.push_back(files_.trust.embedded.front());
  files_.trust.embedded.back().verdict = static_cast<LONG>(kUntrustedRoot);
  subjects.push_back(L"CN=Dropbox, Inc");
  EXPECT_TRUE(facade_.IsDropboxFileTrusted(kProtected));
}

TEST_F(IsDropboxFileTrusted, IgnoresSignaturesThroughCatalogs) {
  const TestSupport::TempFolder folder;
  const std::wstring path = folder.File(L"listed.dll");
  TestSupport::WriteWholeFile(path, "content");
  SignWithSubject(kVerified, L"CN=Dropbox, Inc");
  files_.trust.byCatalog = files_.trust.embedded;
  files_.trust.embedded.clear();
  files_.catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
  ASSERT_EQ(ZQAuthenticodeHelper::GetAllSignatures(path.c_str()).size(), 1U);
  files_.log.Clear();
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(path.c_str()));
  EXPECT_THAT(files_.log.Records(), ElementsAre(Info(L"Starting validation of Dropbox file."),
                                                Error(L"Dropbox file is not trusted by windows.")));
}

TEST_F(IsDropboxFileTrusted, LogsAFailureToReadSignaturesAndRefuses) {
  // Trimming a key without bytes throws.
  SignWithSubject(kVerified, L"CN=Dropbox, Inc");
  files_.trust.embedded.front().key.clear();
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(kProtected));
  const auto records = files_.log.Records();
  ASSERT_EQ(records.size(), 2U);
  EXPECT_EQ(records[1].level, Standin::LogLevel::kError);
  const std::wstring begin = L"Problem while validating certificates from Dropbox. ";
  EXPECT_EQ(records[1].text.substr(0, begin.size()), begin);
  EXPECT_GT(records[1].text.size(), begin.size());
  EXPECT_TRUE(files_.NoPlaceWasChecked());
}

TEST_F(IsDropboxFileTrusted, LogsEveryStandardExceptionWithItsText) {
  const Standin::ImportPatch reason(
      "WinVerifyTrust",
      +[](HWND, GUID*, LPVOID) -> LONG { throw std::runtime_error("100% of %s, %d and %n"); });
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(kProtected));
  EXPECT_THAT(
      files_.log.Records(),
      ElementsAre(
          Info(L"Starting validation of Dropbox file."),
          Error(L"Problem while validating certificates from Dropbox. 100% of %s, %d and %n")));
  const Standin::ImportPatch memory(
      "WinVerifyTrust", +[](HWND, GUID*, LPVOID) -> LONG { throw std::bad_alloc(); });
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(kProtected));
  EXPECT_EQ(files_.log.Records().size(), 4U);
  EXPECT_TRUE(files_.NoPlaceWasChecked());
}

TEST_F(IsDropboxFileTrusted, LetsOtherExceptionsPropagate) {
  SignWithSubject(kVerified, L"CN=Dropbox, Inc");
  const Standin::ImportPatch verify(
      "WinVerifyTrust", +[](HWND, GUID*, LPVOID) -> LONG { throw 5; });
  EXPECT_THROW(facade_.IsDropboxFileTrusted(kProtected), int);
  EXPECT_THAT(files_.log.Records(), ElementsAre(Info(L"Starting validation of Dropbox file.")));
}

TEST_F(IsDropboxFileTrusted, LogsAndRefusesANullPath) {
  EXPECT_FALSE(facade_.IsDropboxFileTrusted(nullptr));
  EXPECT_THAT(files_.log.Records(), ElementsAre(Info(L"Starting validation of Dropbox file."),
                                                Error(L"Dropbox file is not trusted by windows.")));
}

TEST_F(IsDropboxFileTrusted, LetsExceptionsOfThePathCheckPropagate) {
  SignWithSubject(kVerified, L"CN=Dropbox, Inc");
  const Standin::ImportPatch expand(
      "ExpandEnvironmentStringsW",
      +[](LPCWSTR, LPWSTR, DWORD) -> DWORD { throw std::runtime_error("some words"); });
  EXPECT_THROW(facade_.IsDropboxFileTrusted(kProtected), std::runtime_error);
  EXPECT_THAT(files_.log.Records(), ElementsAre(Info(L"Starting validation of Dropbox file."),
                                                Info(L"Subject = CN=Dropbox, Inc")));
}

}  // namespace
}  // namespace Zq::Gantry::Security
