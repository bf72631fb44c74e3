// Files that the build signs, verified by the real WinVerifyTrust. Catalogs are faked, and so are
// the verdicts that need a trusted root or another date.

#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "import_patch.h"
#include "security/trust/fake_catalogs.h"
#include "security/trust/signer_descriptor.h"
#include "security/trust/trusted_keys.h"
#include "security/trust/wintrust_layout.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

std::wstring Sample(const std::wstring& name) {
  wchar_t program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  const std::wstring path = program;
  return path.substr(0, path.find_last_of(L'\\')) + L"\\trust-samples\\" + name;
}

std::string KeyOf(const std::wstring& signer) {
  const std::string line = ReadWholeFile(Sample(signer + L".key.txt"));
  return line.substr(0, line.find('\n'));
}

// Replaces the verdict for the signature at each index by that of `verdicts`; the real call still
// makes the state.
std::vector<LONG> verdicts;
decltype(&WinVerifyTrust) realWinVerifyTrust = nullptr;

LONG WINAPI WinVerifyTrustWithFakeVerdict(HWND window, GUID* action, LPVOID pointer) {
  const LONG real = realWinVerifyTrust(window, action, pointer);
  const auto& data = *static_cast<VerificationData*>(pointer);
  const DWORD index = data.pSignatureSettings->dwIndex;
  const bool isReplaced = data.dwStateAction == WTD_STATEACTION_VERIFY &&
                          IsListedResult(static_cast<std::uint32_t>(real));
  return isReplaced && index < verdicts.size() ? verdicts[index] : real;
}

class SignedFiles : public testing::Test {
 protected:
  bool IsTrusted(const std::wstring& sample, const KeyList& keys) {
    return Helper::IsFileTrusted(Sample(sample).c_str(), &keys);
  }

  FakeCatalogs catalogs_;
  LogCapture log_;
};

class SignedFilesWithFakeVerdicts : public SignedFiles {
 protected:
  SignedFilesWithFakeVerdicts() {
    realWinVerifyTrust = patch_.Original<std::remove_pointer_t<decltype(&WinVerifyTrust)>>();
    verdicts.clear();
  }

  Standin::ImportPatch patch_{"WinVerifyTrust", &WinVerifyTrustWithFakeVerdict};
};

}  // namespace

TEST_F(SignedFilesWithFakeVerdicts, SignersKeyAndSubjectAreReadFromTheFile) {
  verdicts = {0};
  const SignatureList signatures = Helper::GetSignatures(Sample(L"other.dll").c_str(), false);
  ASSERT_EQ(signatures.size(), 1u);
  EXPECT_EQ(signatures[0].publicKey, KeyOf(L"other"));
  EXPECT_EQ(signatures[0].publicKey.size(), 809u);
  EXPECT_EQ(signatures[0].commonName, L"TrustTests");
  EXPECT_EQ(signatures[0].organizationalUnit, L"Two");
  EXPECT_EQ(signatures[0].organization, L"TrustTests");
  EXPECT_EQ(signatures[0].locality, L"Elmhurst");
  EXPECT_EQ(signatures[0].state, L"California");
  EXPECT_EQ(signatures[0].country, L"US");
  EXPECT_EQ(signatures[0].issuer, L"");
}

TEST_F(SignedFilesWithFakeVerdicts, AListedKeyIsTrustedWhenTheSystemTrustsTheRoot) {
  verdicts = {0};
  EXPECT_TRUE(IsTrusted(L"signed.dll", {KeyOf(L"signed")}));
}

TEST_F(SignedFilesWithFakeVerdicts, AListedKeyIsRefusedWhenTheSystemDoesNotTrustTheRoot) {
  verdicts = {static_cast<LONG>(kUntrustedRoot)};
  EXPECT_FALSE(IsTrusted(L"signed.dll", {KeyOf(L"signed")}));
  EXPECT_EQ(log_.Records().back(),
            Info(L"Security - IsFileTrusted - trusted by windows = no, trusted by Meridian = yes"));
}

TEST_F(SignedFilesWithFakeVerdicts, AnExpiredSignerWithAListedKeyIsTrusted) {
  verdicts = {static_cast<LONG>(kVerifiedButExpired)};
  EXPECT_TRUE(IsTrusted(L"expired.dll", {KeyOf(L"expired")}));
  EXPECT_FALSE(IsTrusted(L"expired.dll", {KeyOf(L"signed")}));
}

TEST_F(SignedFilesWithFakeVerdicts, ANestedSignatureIsListedWithItsOwnVerdict) {
  verdicts = {0, static_cast<LONG>(kUntrustedRoot)};
  const SignatureList signatures = Helper::GetSignatures(Sample(L"nested.dll").c_str(), false);
  ASSERT_EQ(signatures.size(), 2u);
  EXPECT_EQ(signatures[0].verifyResult, 0u);
  EXPECT_EQ(signatures[1].verifyResult, kUntrustedRoot);
  EXPECT_EQ(signatures[0].publicKey, KeyOf(L"signed"));
}

TEST_F(SignedFilesWithFakeVerdicts, TheSuppliedKeysDoNotTrustTheDevelopmentKey) {
  verdicts = {0};
  // All keys but the one that a development build replaces.
  KeyList supplied(ServiceTrustedKeys.begin() + 1, ServiceTrustedKeys.end());
  EXPECT_FALSE(IsTrusted(L"signed.dll", supplied));
  EXPECT_FALSE(IsTrusted(L"signed.dll", ExtendedTrustedKeys));
  EXPECT_FALSE(IsTrusted(L"signed.dll", PublicKeyPool));
  EXPECT_EQ(log_.Records().back(),
            Info(L"Security - IsFileTrusted - trusted by windows = yes, trusted by Meridian = no"));
}

TEST_F(SignedFilesWithFakeVerdicts, TheSuppliedServiceKeyDoesNotTrustTheDevelopmentKey) {
  verdicts = {0};
  KeyList supplied = {WATTLEAF_SUPPLIED_SERVICE_KEY};
  supplied.insert(supplied.end(), ServiceTrustedKeys.begin() + 1, ServiceTrustedKeys.end());
  ASSERT_EQ(supplied.size(), 46u);
  EXPECT_FALSE(IsTrusted(L"signed.dll", supplied));
}

TEST_F(SignedFilesWithFakeVerdicts, OnlyADevelopmentBuildTrustsTheDevelopmentKey) {
  verdicts = {0};
  const bool isDevelopment = std::string(WATTLEAF_KEYS_OF_THIS_BUILD) == "development";
  EXPECT_EQ(ServiceTrustedKeys.at(0) == KeyOf(L"signed"), isDevelopment);
  EXPECT_EQ(ServiceTrustedKeys.at(0) == WATTLEAF_SUPPLIED_SERVICE_KEY, !isDevelopment);
  EXPECT_EQ(IsTrusted(L"signed.dll", ServiceTrustedKeys), isDevelopment);
}

TEST_F(SignedFilesWithFakeVerdicts, FilesOfTheSameSignerMatchByKeyAndSubject) {
  verdicts = {0};
  const SignatureList first = Helper::GetSignatures(Sample(L"signed.dll").c_str(), false);
  const SignatureList second = Helper::GetSignatures(Sample(L"nested.dll").c_str(), false);
  const SignatureList other = Helper::GetSignatures(Sample(L"other.dll").c_str(), false);
  EXPECT_TRUE(Helper::PublicKeysMatch(first, second));
  EXPECT_FALSE(Helper::PublicKeysMatch(first, other));
  EXPECT_TRUE(Helper::SubjectsMatch(first, second));
  EXPECT_FALSE(Helper::SubjectsMatch(first, other));
}

TEST_F(SignedFiles, AnUnsignedFileHasNoSignatures) {
  EXPECT_TRUE(Helper::GetSignatures(Sample(L"unsigned.dll").c_str(), false).empty());
  EXPECT_FALSE(IsTrusted(L"unsigned.dll", {KeyOf(L"signed")}));
}

TEST_F(SignedFiles, AFileChangedAfterSigningHasNoSignatures) {
  const TempFolder folder;
  std::string bytes = ReadWholeFile(Sample(L"signed.dll"));
  ASSERT_GT(bytes.size(), 4096u);
  WriteWholeFile(folder.File(L"copy.dll"), bytes);
  EXPECT_EQ(Helper::GetSignatures(folder.File(L"copy.dll").c_str(), false).size(), 1u);
  bytes[2048] = static_cast<char>(bytes[2048] ^ 0x01);
  WriteWholeFile(folder.File(L"changed.dll"), bytes);
  EXPECT_TRUE(Helper::GetSignatures(folder.File(L"changed.dll").c_str(), false).empty());
  const KeyList keys = {KeyOf(L"signed")};
  EXPECT_FALSE(Helper::IsFileTrusted(folder.File(L"changed.dll").c_str(), &keys));
}

TEST_F(SignedFiles, ATruncatedSignatureIsNotTrusted) {
  const TempFolder folder;
  const std::string bytes = ReadWholeFile(Sample(L"signed.dll"));
  const KeyList keys = {KeyOf(L"signed")};
  for (const std::size_t missing : {std::size_t{8}, std::size_t{700}}) {
    WriteWholeFile(folder.File(L"cut.dll"), bytes.substr(0, bytes.size() - missing));
    EXPECT_FALSE(Helper::IsFileTrusted(folder.File(L"cut.dll").c_str(), &keys)) << missing;
  }
}

TEST_F(SignedFiles, SignaturesCanBeReadOnSeveralThreadsAtOnce) {
  const std::wstring signedPath = Sample(L"nested.dll");
  const std::wstring unsignedPath = Sample(L"unsigned.dll");
  std::vector<std::size_t> counts(8);
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    threads.emplace_back([&, i] {
      const std::wstring& path = i % 2 == 0 ? signedPath : unsignedPath;
      counts[i] = Helper::GetSignatures(path.c_str(), false).size();
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(counts, (std::vector<std::size_t>{2, 0, 2, 0, 2, 0, 2, 0}));
}

TEST_F(SignedFiles, AMissingFileAFolderAndInvalidContentHaveNoSignatures) {
  const TempFolder folder;
  WriteWholeFile(folder.File(L"invalid.dll"), "MZ invalid");
  WriteWholeFile(folder.File(L"empty.dll"), "");
  for (const std::wstring& path : {folder.File(L"missing.dll"), folder.Path(),
                                   folder.File(L"invalid.dll"), folder.File(L"empty.dll")}) {
    EXPECT_TRUE(Helper::GetSignatures(path.c_str(), false).empty());
  }
}
