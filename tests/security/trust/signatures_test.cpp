#include "security/trust/zq_authenticode_helper.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "security/trust/fake_catalogs.h"
#include "security/trust/fake_trust.h"
#include "support/call_record.h"
#include "support/import_watch.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

const wchar_t* const kPath = L"C:\\folder\\file.dll";

/// A file that one catalog lists, with the fakes that find its signatures.
struct ListedFile {
  ListedFile() {
    WriteWholeFile(path, "content");
    catalogs.catalogs = {L"C:\\catalogs\\first.cat"};
  }

  /// Adds the calls of both fakes to `record`.
  void RecordIn(CallRecord& record) {
    trust.record = &record;
    catalogs.record = &record;
  }

  TempFolder folder;
  std::wstring path = folder.File(L"listed.exe");
  FakeTrust trust;
  FakeCatalogs catalogs;
};

std::vector<DWORD> IndexesOf(const std::vector<TrustCall>& calls) {
  std::vector<DWORD> indexes;
  for (const TrustCall& call : calls) indexes.push_back(call.index);
  return indexes;
}

std::vector<std::string> KeysOf(const SignatureList& signatures) {
  std::vector<std::string> keys;
  for (const SignerDescriptor& signature : signatures) keys.push_back(signature.publicKey);
  return keys;
}

}  // namespace

TEST(GetSignatures, ReturnsNothingForANullPathWithoutASystemCall) {
  const ImportWatch watch;
  EXPECT_TRUE(Helper::GetSignatures(nullptr, false).empty());
  EXPECT_TRUE(Helper::GetSignatures(nullptr, true).empty());
  EXPECT_TRUE(watch.Calls().empty());
}

TEST(GetSignatures, VerifiesAnEmbeddedSignatureAsWindowsDocumentsIt) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  static_cast<void>(Helper::GetSignatures(kPath, false));

  ASSERT_EQ(trust.calls.size(), 2u);
  const TrustCall& call = trust.calls[0];
  EXPECT_FALSE(call.hasWindow);
  const GUID genericVerify2 = {
      0x00AAC56B, 0xCD44, 0x11D0, {0x8C, 0xC2, 0x00, 0xC0, 0x4F, 0xC2, 0x95, 0xEE}};
  EXPECT_TRUE(IsEqualGUID(call.action, genericVerify2));
  EXPECT_EQ(call.dataSize, 88u);
  EXPECT_EQ(call.ui, 2u);
  EXPECT_EQ(call.revocation, 0u);
  EXPECT_EQ(call.choice, 1u);
  EXPECT_EQ(call.stateAction, 1u);
  EXPECT_FALSE(call.hasState);
  EXPECT_EQ(call.fileInfoSize, 32u);
  EXPECT_EQ(call.path, kPath);
  EXPECT_FALSE(call.hasFileHandle);
  EXPECT_FALSE(call.hasKnownSubject);
}

TEST(GetSignatures, PassesSignatureSettingsToEachCall) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1), Signature(0, 2)};
  static_cast<void>(Helper::GetSignatures(kPath, false));
  for (const TrustCall& call : trust.calls) {
    EXPECT_EQ(call.settingsSize, 32u);
    EXPECT_EQ(call.flags, 3u);
  }
}

TEST(GetSignatures, VisitsThePrimaryAndAllNestedSignatures) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1), Signature(0, 2), Signature(0, 3)};
  const SignatureList signatures = Helper::GetSignatures(kPath, false);
  EXPECT_EQ(IndexesOf(trust.VerifyCalls()), (std::vector<DWORD>{0, 1, 2}));
  EXPECT_EQ(KeysOf(signatures), (std::vector<std::string>{"30 01", "30 02", "30 03"}));
}

TEST(GetSignatures, ClosesEachStateBeforeTheNextVerification) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1), Signature(kBadDigestVerdict, 2), Signature(0, 3)};
  static_cast<void>(Helper::GetSignatures(kPath, false));

  ASSERT_EQ(trust.calls.size(), 6u);
  for (std::size_t i = 0; i < 6; i += 2) {
    EXPECT_EQ(trust.calls[i].stateAction, 1u);
    EXPECT_FALSE(trust.calls[i].hasState) << "the previous close must clear the handle";
    EXPECT_EQ(trust.calls[i + 1].stateAction, 2u);
    EXPECT_TRUE(trust.calls[i + 1].hasState);
  }
  EXPECT_EQ(trust.openStates, 0);
}

TEST(GetSignatures, ClosesTheStateWhenReadingTheSignerThrows) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  trust.embedded[0].key.clear();
  EXPECT_THROW(static_cast<void>(Helper::GetSignatures(kPath, false)), std::out_of_range);
  EXPECT_EQ(trust.CloseCalls().size(), 1u);
  EXPECT_EQ(trust.openStates, 0);
}

TEST(GetSignatures, ListsVerifiedExpiredAndUntrustedRootWithTheirVerdicts) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1), Signature(kExpiredVerdict, 2),
                    Signature(kUntrustedRootVerdict, 3)};
  const SignatureList signatures = Helper::GetSignatures(kPath, false);
  ASSERT_EQ(signatures.size(), 3u);
  EXPECT_EQ(signatures[0].verifyResult, 0u);
  EXPECT_EQ(signatures[1].verifyResult, 0x800B0101u);
  EXPECT_EQ(signatures[2].verifyResult, 0x800B0109u);
}

TEST(GetSignatures, SkipsOtherVerdictsAndContinues) {
  FakeTrust trust;
  trust.embedded = {Signature(kBadDigestVerdict, 1), Signature(1, 2), Signature(0, 3)};
  EXPECT_EQ(KeysOf(Helper::GetSignatures(kPath, false)), (std::vector<std::string>{"30 03"}));
  EXPECT_EQ(trust.VerifyCalls().size(), 3u);
}

TEST(GetSignatures, StopsAtTheCountOfTheLastVerification) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  trust.secondaryCounts = std::vector<DWORD>{5, 5, 2};
  static_cast<void>(Helper::GetSignatures(kPath, false));
  EXPECT_EQ(IndexesOf(trust.VerifyCalls()), (std::vector<DWORD>{0, 1, 2}));
}

TEST(GetSignatures, KeepsTheCountWhenALaterVerificationWritesNone) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  trust.secondaryCounts = std::vector<DWORD>{2};
  static_cast<void>(Helper::GetSignatures(kPath, false));
  EXPECT_EQ(IndexesOf(trust.VerifyCalls()), (std::vector<DWORD>{0, 1, 2}));
}

TEST(GetSignatures, ReadsTheCountBeforeTheStateIsClosed) {
  // The fake close overwrites the settings: a count that is read after it would give 64 visits.
  FakeTrust trust;
  trust.embedded = {Signature(0, 1), Signature(kBadDigestVerdict, 2), Signature(0, 3)};
  static_cast<void>(Helper::GetSignatures(kPath, false));
  EXPECT_EQ(IndexesOf(trust.VerifyCalls()), (std::vector<DWORD>{0, 1, 2}));
}

TEST(GetSignatures, RestoresTheSettingsThatACloseOverwrote) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1), Signature(0, 2), Signature(0, 3)};
  static_cast<void>(Helper::GetSignatures(kPath, false));
  ASSERT_EQ(trust.VerifyCalls().size(), 3u);
  for (const TrustCall& call : trust.VerifyCalls()) {
    EXPECT_EQ(call.settingsSize, 32u);
    EXPECT_EQ(call.flags, 3u);
    EXPECT_FALSE(call.hasPolicy);
  }
}

TEST(GetSignatures, StopsAtSixtyFourForAMadeUpCount) {
  FakeTrust trust;
  trust.embedded = {Signature(0, 1)};
  trust.secondaryCounts = std::vector<DWORD>{0xFFFFFFFF};
  EXPECT_EQ(Helper::GetSignatures(kPath, false).size(), 64u);
  EXPECT_EQ(trust.VerifyCalls().size(), 64u);
  EXPECT_EQ(trust.CloseCalls().size(), 64u);
  EXPECT_EQ(trust.openStates, 0);
}

TEST(GetSignatures, VerifiesOnceForAnUnsignedFile) {
  FakeTrust trust;
  EXPECT_TRUE(Helper::GetSignatures(kPath, false).empty());
  EXPECT_EQ(IndexesOf(trust.VerifyCalls()), (std::vector<DWORD>{0}));
  EXPECT_EQ(trust.CloseCalls().size(), 1u);
}

TEST(GetSignatures, VerifiesEachSignatureOfACatalog) {
  ListedFile file;
  file.trust.byCatalog = {Signature(0, 1), Signature(kUntrustedRootVerdict, 2)};
  file.catalogs.catalogs = {L"C:\\catalogs\\first.cat", L"C:\\catalogs\\second.cat"};

  const SignatureList signatures = Helper::GetSignatures(file.path.c_str(), true);

  EXPECT_EQ(KeysOf(signatures), (std::vector<std::string>{"30 01", "30 02"}));
  ASSERT_EQ(file.trust.calls.size(), 4u);
  for (const TrustCall& call : file.trust.calls) {
    EXPECT_EQ(call.dataSize, 88u);
    EXPECT_EQ(call.choice, 2u);
    EXPECT_EQ(call.settingsSize, 32u);
    EXPECT_EQ(call.flags, 3u);
    EXPECT_EQ(call.catalogPath, L"C:\\catalogs\\first.cat");
    EXPECT_EQ(call.memberPath, file.path);
  }
}

TEST(GetSignatures, ReadsSubjectThenIssuerBetweenVerificationAndClose) {
  CallRecord record;
  const LogCapture log(record);
  FakeTrust trust;
  trust.record = &record;
  trust.embedded = {Signature(0, 1), Signature(kBadDigestVerdict, 2),
                    Signature(kUntrustedRootVerdict, 3)};
  static_cast<void>(Helper::GetSignatures(kPath, false));
  EXPECT_EQ(record.Lines(), (std::vector<std::string>{
                                "verify embedded 0", "provider", "signer", "certificate", "subject",
                                "issuer", "log info: Subject = CN=Signer", "close",  //
                                "verify embedded 1", "close",                        //
                                "verify embedded 2", "provider", "signer", "certificate", "subject",
                                "issuer", "log info: Subject = CN=Signer", "close"}));
}

TEST(GetSignatures, HashesThenFindsTheCatalogThenVerifiesThenReleasesItsContext) {
  CallRecord record;
  ListedFile file;
  file.RecordIn(record);
  file.trust.byCatalog = {Signature(0, 1), Signature(kBadDigestVerdict, 2)};
  static_cast<void>(Helper::GetSignatures(file.path.c_str(), true));
  EXPECT_EQ(record.Lines(),
            (std::vector<std::string>{"acquire", "hash size", "hash", "enum", "info",
                                      "release catalog", "verify catalog 0", "provider", "signer",
                                      "certificate", "subject", "issuer", "close",
                                      "verify catalog 1", "close", "release context"}));
}

TEST(GetAllSignatures, ReleasesTheCatalogContextBeforeVerifyingEmbeddedSignatures) {
  CallRecord record;
  ListedFile file;
  file.RecordIn(record);
  file.trust.byCatalog = {Signature(0, 1)};
  file.trust.embedded = {Signature(0, 2)};
  static_cast<void>(Helper::GetAllSignatures(file.path.c_str()));
  EXPECT_EQ(record.LinesOf({"acquire", "verify", "close", "release context"}),
            (std::vector<std::string>{"acquire", "verify catalog 0", "close", "release context",
                                      "verify embedded 0", "close"}));
}

TEST(GetSignatures, ReleasesTheCatalogContextAfterTheLastVerification) {
  ListedFile file;
  file.trust.byCatalog = {Signature(0, 1)};

  static_cast<void>(Helper::GetSignatures(file.path.c_str(), true));
  EXPECT_EQ(file.catalogs.calls.back(), "release context");
  EXPECT_EQ(file.catalogs.openContexts, 0);
  EXPECT_EQ(file.catalogs.openCatalogs, 0);

  file.trust.byCatalog[0].key.clear();
  EXPECT_THROW(static_cast<void>(Helper::GetSignatures(file.path.c_str(), true)),
               std::out_of_range);
  EXPECT_EQ(file.catalogs.openContexts, 0);
  EXPECT_EQ(file.trust.openStates, 0);
}

TEST(GetSignatures, VerifiesNothingWhenNoCatalogListsTheFile) {
  ListedFile file;
  file.catalogs.catalogs.clear();
  file.trust.byCatalog = {Signature(0, 1)};
  EXPECT_TRUE(Helper::GetSignatures(file.path.c_str(), true).empty());
  EXPECT_EQ(file.catalogs.Count("enum"), 1);
  EXPECT_TRUE(file.trust.calls.empty());
}

TEST(GetAllSignatures, ListsCatalogSignaturesBeforeEmbeddedOnes) {
  ListedFile file;
  file.trust.byCatalog = {Signature(0, 1), Signature(0, 2)};
  file.trust.embedded = {Signature(0, 3), Signature(0, 4)};
  EXPECT_EQ(KeysOf(Helper::GetAllSignatures(file.path.c_str())),
            (std::vector<std::string>{"30 01", "30 02", "30 03", "30 04"}));
}

TEST(GetAllSignatures, ReadsTheSignaturesAnewOnEachCall) {
  FakeTrust trust;
  FakeCatalogs catalogs;
  trust.embedded = {Signature(0, 1)};
  EXPECT_EQ(Helper::GetAllSignatures(kPath).size(), 1u);
  trust.embedded.clear();
  EXPECT_TRUE(Helper::GetAllSignatures(kPath).empty());
}
