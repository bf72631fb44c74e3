#include <gtest/gtest.h>

#include <functional>

#include "security/trust/fake_catalogs.h"
#include "security/trust/fake_trust.h"
#include "security/trust/zq_authenticode_helper.h"
#include "support/import_watch.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

constexpr LONG kExpired = static_cast<LONG>(0x800B0101);
constexpr LONG kUnknownRoot = static_cast<LONG>(0x800B0109);
constexpr std::uint8_t kListed = 0x0a;
constexpr std::uint8_t kUnlisted = 0x0b;

FakeSignature Signature(LONG verdict, std::uint8_t lastKeyByte) {
  FakeSignature signature;
  signature.verdict = verdict;
  signature.key = {0x30, lastKeyByte};
  return signature;
}

LogRecord Verdict(const std::wstring& byWindows, const std::wstring& byMeridian) {
  return Info(L"Security - IsFileTrusted - trusted by windows = " + byWindows +
              L", trusted by Meridian = " + byMeridian);
}

class IsFileTrusted : public testing::Test {
 protected:
  IsFileTrusted() { WriteWholeFile(path_, "content"); }

  bool Ask(const KeyList& keys) { return Helper::IsFileTrusted(path_.c_str(), &keys); }

  // The lines that the two sources write for a file that no catalog lists, then a line for each
  // embedded signature, then `last`.
  std::vector<LogRecord> Lines(int signers, std::vector<LogRecord> last) const {
    std::vector<LogRecord> lines = {Info(L"Security - GetSecurityCatalogInfo - File = " + path_),
                                    Error(L"Security - GetSecurityCatalogInfo - Failed during "
                                          L"CryptCATAdminEnumCatalogFromHash. Error Code = 1168")};
    for (int i = 0; i < signers; ++i) lines.push_back(Info(L"Subject = CN=Signer"));
    lines.insert(lines.end(), last.begin(), last.end());
    return lines;
  }

  TempFolder folder_;
  std::wstring path_ = folder_.File(L"judged.dll");
  FakeTrust trust_;
  FakeCatalogs catalogs_;
  LogCapture log_;
  const KeyList keys_ = {"30 0c", "30 0a"};
};

}  // namespace

TEST_F(IsFileTrusted, RefusesAListedKeyWithAnUntrustedRoot) {
  trust_.embedded = {Signature(kUnknownRoot, kListed)};
  EXPECT_FALSE(Ask(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"no", L"yes")}));
}

TEST_F(IsFileTrusted, RefusesAValidSignatureWithAnUnlistedKey) {
  trust_.embedded = {Signature(0, kUnlisted)};
  EXPECT_FALSE(Ask(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"yes", L"no")}));
}

TEST_F(IsFileTrusted, AcceptsAValidSignatureWithAListedKey) {
  trust_.embedded = {Signature(0, kListed)};
  EXPECT_TRUE(Ask(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"yes", L"yes")}));
}

TEST_F(IsFileTrusted, AcceptsAnExpiredCertificateWithAListedKey) {
  trust_.embedded = {Signature(kExpired, kListed)};
  EXPECT_TRUE(Ask(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"yes", L"yes")}));
}

TEST_F(IsFileTrusted, AcceptsWhenDifferentSignaturesPassTheTwoTests) {
  trust_.embedded = {Signature(0, kUnlisted), Signature(kUnknownRoot, kListed)};
  EXPECT_TRUE(Ask(keys_));
  EXPECT_EQ(log_.Records(), Lines(2, {Verdict(L"yes", L"yes")}));
}

TEST_F(IsFileTrusted, RefusesAnUntrustedSignatureWithAnUnlistedKey) {
  trust_.embedded = {Signature(kUnknownRoot, kUnlisted)};
  EXPECT_FALSE(Ask(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"no", L"no")}));
}

TEST_F(IsFileTrusted, RefusesAnUnsignedFileWithoutAVerdictLine) {
  EXPECT_FALSE(Ask(keys_));
  EXPECT_EQ(log_.Records(), Lines(0, {}));
}

TEST_F(IsFileTrusted, RefusesAnEmptyKeyListAfterTheVerification) {
  trust_.embedded = {Signature(0, kListed)};
  EXPECT_FALSE(Ask({}));
  EXPECT_EQ(trust_.VerifyCalls().size(), 1u);
  EXPECT_EQ(log_.Records(), Lines(1, {}));
}

TEST_F(IsFileTrusted, RefusesANullPathOrListWithoutALogLineOrASystemCall) {
  trust_.embedded = {Signature(0, kListed)};
  const TestSupport::ImportWatch watch;
  EXPECT_FALSE(Helper::IsFileTrusted(nullptr, &keys_));
  EXPECT_FALSE(Helper::IsFileTrusted(path_.c_str(), nullptr));
  EXPECT_FALSE(Helper::IsFileTrusted(nullptr, nullptr));
  EXPECT_TRUE(log_.Records().empty());
  EXPECT_TRUE(watch.Calls().empty());
}

TEST_F(IsFileTrusted, AcceptsACatalogForWindowsAndAnEmbeddedSignatureForTheKey) {
  catalogs_.catalogs = {L"C:\\catalogs\\first.cat"};
  trust_.byCatalog = {Signature(0, kUnlisted)};
  trust_.embedded = {Signature(kUnknownRoot, kListed)};
  EXPECT_TRUE(Ask(keys_));
  EXPECT_EQ(log_.Records().back(), Verdict(L"yes", L"yes"));
}

TEST_F(IsFileTrusted, StillRefusesWhenASystemCallFails) {
  struct Failure {
    const char* label;
    std::function<void(FakeTrust&, FakeCatalogs&)> apply;
  };
  const Failure failures[] = {
      {"acquire", [](FakeTrust&, FakeCatalogs& c) { c.failAcquire = true; }},
      {"acquire gives null", [](FakeTrust&, FakeCatalogs& c) { c.acquireNull = true; }},
      {"hash size", [](FakeTrust&, FakeCatalogs& c) { c.hashSizeZero = true; }},
      {"hash", [](FakeTrust&, FakeCatalogs& c) { c.failHash = true; }},
      {"enumerate", [](FakeTrust&, FakeCatalogs& c) { c.catalogs.clear(); }},
      {"catalog info", [](FakeTrust&, FakeCatalogs& c) { c.failInfo = true; }},
      {"state", [](FakeTrust& t, FakeCatalogs&) { t.leaveStateNull = true; }},
      {"provider data", [](FakeTrust& t, FakeCatalogs&) { t.hideProvider = true; }},
      {"signer", [](FakeTrust& t, FakeCatalogs&) { t.hideSigner = true; }},
      {"certificate", [](FakeTrust& t, FakeCatalogs&) { t.hideCertificate = true; }},
      {"context", [](FakeTrust& t, FakeCatalogs&) { t.hideCertificateContext = true; }},
  };
  const std::vector<std::vector<FakeSignature>> refused = {
      {},
      {Signature(kUnknownRoot, kListed)},
      {Signature(0, kUnlisted)},
      {Signature(kExpired, kUnlisted)},
      {Signature(static_cast<LONG>(0x80096010), kListed)},
  };
  for (const Failure& failure : failures) {
    for (std::size_t i = 0; i < refused.size(); ++i) {
      FakeTrust trust;
      trust.embedded = refused[i];
      trust.byCatalog = refused[i];
      FakeCatalogs catalogs;
      catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
      failure.apply(trust, catalogs);
      EXPECT_FALSE(Ask(keys_)) << failure.label << ", case " << i;
      EXPECT_EQ(trust.openStates, 0) << failure.label;
      EXPECT_EQ(catalogs.openContexts, 0) << failure.label;
      EXPECT_EQ(catalogs.openCatalogs, 0) << failure.label;
    }
  }
}

TEST_F(IsFileTrusted, RefusesASignerThatCannotBeRead) {
  trust_.embedded = {Signature(0, kListed)};
  trust_.hideProvider = true;
  EXPECT_FALSE(Ask(keys_));
  EXPECT_EQ(log_.Records(), Lines(0, {Verdict(L"yes", L"no")}));
}

TEST_F(IsFileTrusted, RefusesASignerWithoutAReadableKeyWhenTheListHasAnEmptyText) {
  trust_.embedded = {Signature(0, kListed)};
  trust_.hideProvider = true;
  EXPECT_FALSE(Ask({""}));
  EXPECT_EQ(log_.Records(), Lines(0, {Verdict(L"yes", L"no")}));
}

TEST_F(IsFileTrusted, LeavesTheFileClosedSoThatItCanBeReplacedAfterTheCheck) {
  catalogs_.catalogs = {L"C:\\catalogs\\first.cat"};
  trust_.byCatalog = {Signature(0, kListed)};
  trust_.embedded = {Signature(0, kListed)};
  ASSERT_TRUE(Ask(keys_));
  // Without any sharing: fails where somebody still has the file open.
  const HANDLE alone =
      CreateFileW(path_.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  EXPECT_NE(alone, INVALID_HANDLE_VALUE);
  CloseHandle(alone);
}
