#include "security/trust/zq_authenticode_helper.h"

#include <gtest/gtest.h>

#include <functional>

#include "platform/win32/owners.h"
#include "security/trust/fake_catalogs.h"
#include "security/trust/fake_trust.h"
#include "support/import_watch.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

constexpr std::uint8_t kListed = 0x0a;
constexpr std::uint8_t kUnlisted = 0x0b;

LogRecord Verdict(const std::wstring& byWindows, const std::wstring& byMeridian) {
  return Info(L"Security - IsFileTrusted - trusted by windows = " + byWindows +
              L", trusted by Meridian = " + byMeridian);
}

class IsFileTrusted : public testing::Test {
 protected:
  IsFileTrusted() { WriteWholeFile(path_, "content"); }

  [[nodiscard]] bool IsTrusted(const KeyList& keys) {
    return Helper::IsFileTrusted(path_.c_str(), &keys);
  }

  // The lines of the catalog search for a file that no catalog lists, one line for each embedded
  // signature, and then `last`.
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
  trust_.embedded = {Signature(kUntrustedRootVerdict, kListed)};
  EXPECT_FALSE(IsTrusted(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"no", L"yes")}));
}

TEST_F(IsFileTrusted, RefusesAValidSignatureWithAnUnlistedKey) {
  trust_.embedded = {Signature(0, kUnlisted)};
  EXPECT_FALSE(IsTrusted(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"yes", L"no")}));
}

TEST_F(IsFileTrusted, AcceptsAValidSignatureWithAListedKey) {
  trust_.embedded = {Signature(0, kListed)};
  EXPECT_TRUE(IsTrusted(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"yes", L"yes")}));
}

TEST_F(IsFileTrusted, AcceptsAnExpiredCertificateWithAListedKey) {
  trust_.embedded = {Signature(kExpiredVerdict, kListed)};
  EXPECT_TRUE(IsTrusted(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"yes", L"yes")}));
}

TEST_F(IsFileTrusted, AcceptsWhenDifferentSignaturesPassTheTwoTests) {
  trust_.embedded = {Signature(0, kUnlisted), Signature(kUntrustedRootVerdict, kListed)};
  EXPECT_TRUE(IsTrusted(keys_));
  EXPECT_EQ(log_.Records(), Lines(2, {Verdict(L"yes", L"yes")}));
}

TEST_F(IsFileTrusted, RefusesAnUntrustedSignatureWithAnUnlistedKey) {
  trust_.embedded = {Signature(kUntrustedRootVerdict, kUnlisted)};
  EXPECT_FALSE(IsTrusted(keys_));
  EXPECT_EQ(log_.Records(), Lines(1, {Verdict(L"no", L"no")}));
}

TEST_F(IsFileTrusted, RefusesAnUnsignedFileWithoutAVerdictLine) {
  EXPECT_FALSE(IsTrusted(keys_));
  EXPECT_EQ(log_.Records(), Lines(0, {}));
}

TEST_F(IsFileTrusted, RefusesAnEmptyKeyListAfterTheVerification) {
  trust_.embedded = {Signature(0, kListed)};
  EXPECT_FALSE(IsTrusted({}));
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
  trust_.embedded = {Signature(kUntrustedRootVerdict, kListed)};
  EXPECT_TRUE(IsTrusted(keys_));
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
      {Signature(kUntrustedRootVerdict, kListed)},
      {Signature(0, kUnlisted)},
      {Signature(kExpiredVerdict, kUnlisted)},
      {Signature(kBadDigestVerdict, kListed)},
  };
  for (const Failure& failure : failures) {
    for (std::size_t i = 0; i < refused.size(); ++i) {
      FakeTrust trust;
      trust.embedded = refused[i];
      trust.byCatalog = refused[i];
      FakeCatalogs catalogs;
      catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
      failure.apply(trust, catalogs);
      EXPECT_FALSE(IsTrusted(keys_)) << failure.label << ", case " << i;
      EXPECT_EQ(trust.openStates, 0) << failure.label;
      EXPECT_EQ(catalogs.openContexts, 0) << failure.label;
      EXPECT_EQ(catalogs.openCatalogs, 0) << failure.label;
    }
  }
}

TEST_F(IsFileTrusted, RefusesASignerThatCannotBeRead) {
  trust_.embedded = {Signature(0, kListed)};
  trust_.hideProvider = true;
  EXPECT_FALSE(IsTrusted(keys_));
  EXPECT_EQ(log_.Records(), Lines(0, {Verdict(L"yes", L"no")}));
}

TEST_F(IsFileTrusted, RefusesASignerWithoutAReadableKeyWhenTheListHasAnEmptyText) {
  trust_.embedded = {Signature(0, kListed)};
  trust_.hideProvider = true;
  EXPECT_FALSE(IsTrusted({""}));
  EXPECT_EQ(log_.Records(), Lines(0, {Verdict(L"yes", L"no")}));
}

TEST_F(IsFileTrusted, LeavesTheFileClosedSoThatItCanBeReplacedAfterTheCheck) {
  catalogs_.catalogs = {L"C:\\catalogs\\first.cat"};
  trust_.byCatalog = {Signature(0, kListed)};
  trust_.embedded = {Signature(0, kListed)};
  ASSERT_TRUE(IsTrusted(keys_));
  // Fails if a handle of the file is still open, because it shares nothing.
  const Zq::Gantry::Platform::UniqueFileHandle exclusive(
      CreateFileW(path_.c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_TRUE(static_cast<bool>(exclusive));
}
