#include "played_trust.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>

#include "security/trust/wintrust_layout.h"

namespace TestSupport {

using Zq::Gantry::Security::VerificationData;

namespace {

PlayedTrust* current = nullptr;

// What an open state handle stands for: the structures that the reading calls hand out.
struct PlayedState {
  explicit PlayedState(const PlayedSignature& signature)
      : key(signature.key),
        subject(EncodeName(signature.subject)),
        issuer(EncodeName(signature.issuer)) {
    info.SubjectPublicKeyInfo.PublicKey.pbData = key.data();
    info.SubjectPublicKeyInfo.PublicKey.cbData = static_cast<DWORD>(key.size());
    info.Subject = {static_cast<DWORD>(subject.size()), subject.data()};
    info.Issuer = {static_cast<DWORD>(issuer.size()), issuer.data()};
    context.pCertInfo = &info;
    certificate.pCert = &context;
  }

  std::vector<std::uint8_t> key;
  std::vector<std::uint8_t> subject;
  std::vector<std::uint8_t> issuer;
  CERT_INFO info{};
  CERT_CONTEXT context{};
  CRYPT_PROVIDER_DATA provider{};
  CRYPT_PROVIDER_SGNR signer{};
  CRYPT_PROVIDER_CERT certificate{};
};

// The state whose provider data or signer was handed out last; one verification at a time.
PlayedState* readState = nullptr;

std::wstring TextOf(const wchar_t* text) { return text != nullptr ? text : L""; }

TrustCall Describe(HWND window, const GUID& action, const VerificationData& data) {
  TrustCall call;
  call.hasWindow = window != nullptr;
  call.action = action;
  call.dataSize = data.cbStruct;
  call.ui = data.dwUIChoice;
  call.revocation = data.fdwRevocationChecks;
  call.choice = data.dwUnionChoice;
  call.stateAction = data.dwStateAction;
  call.hasState = data.hWVTStateData != nullptr;
  call.settingsSize = data.pSignatureSettings->cbStruct;
  call.index = data.pSignatureSettings->dwIndex;
  call.flags = data.pSignatureSettings->dwFlags;
  if (data.dwUnionChoice == WTD_CHOICE_FILE) {
    call.fileInfoSize = data.pFile->cbStruct;
    call.path = TextOf(data.pFile->pcwszFilePath);
    call.hasFileHandle = data.pFile->hFile != nullptr;
    call.hasKnownSubject = data.pFile->pgKnownSubject != nullptr;
  } else {
    call.catalogInfoSize = data.pCatalog->cbStruct;
    call.catalogVersion = data.pCatalog->dwCatalogVersion;
    call.catalogPath = TextOf(data.pCatalog->pcwszCatalogFilePath);
    call.memberTag = TextOf(data.pCatalog->pcwszMemberTag);
    call.memberPath = TextOf(data.pCatalog->pcwszMemberFilePath);
    call.hasMemberHandle = data.pCatalog->hMemberFile != nullptr;
    call.catalogAdmin = data.pCatalog->hCatAdmin;
  }
  return call;
}

void WriteSecondaryCount(DWORD& count, std::size_t signatures, std::size_t verifyNumber) {
  if (!current->secondaryCounts) {
    count = signatures > 0 ? static_cast<DWORD>(signatures - 1) : 0;
  } else if (verifyNumber < current->secondaryCounts->size()) {
    count = (*current->secondaryCounts)[verifyNumber];
  }
}

LONG Verify(VerificationData& data) {
  const auto& signatures =
      data.dwUnionChoice == WTD_CHOICE_FILE ? current->embedded : current->byCatalog;
  WriteSecondaryCount(data.pSignatureSettings->cSecondarySigs, signatures.size(),
                      current->VerifyCalls().size() - 1);
  if (signatures.empty()) return current->verdictOfNone;

  // An index beyond the last signature finds the last one again.
  const std::size_t index =
      std::min<std::size_t>(data.pSignatureSettings->dwIndex, signatures.size() - 1);
  if (!current->leaveStateNull) {
    data.hWVTStateData = new PlayedState(signatures[index]);
    ++current->openStates;
  }
  return signatures[index].verdict;
}

void Close(VerificationData& data) {
  if (data.hWVTStateData == nullptr) return;
  delete static_cast<PlayedState*>(data.hWVTStateData);
  --current->openStates;
}

LONG WINAPI PlayedWinVerifyTrust(HWND window, GUID* action, LPVOID pointer) {
  auto& data = *static_cast<VerificationData*>(pointer);
  current->calls.push_back(Describe(window, *action, data));
  if (data.dwStateAction == WTD_STATEACTION_VERIFY) return Verify(data);
  Close(data);
  return 0;
}

CRYPT_PROVIDER_DATA* WINAPI PlayedProvider(HANDLE state) {
  EXPECT_NE(state, nullptr);
  if (current->hideProvider || state == nullptr) return nullptr;
  readState = static_cast<PlayedState*>(state);
  return &readState->provider;
}

CRYPT_PROVIDER_SGNR* WINAPI PlayedSigner(CRYPT_PROVIDER_DATA* provider, DWORD index,
                                         BOOL isCounterSigner, DWORD counterIndex) {
  EXPECT_EQ(provider, &readState->provider);
  EXPECT_EQ(index, 0u);
  EXPECT_FALSE(isCounterSigner);
  EXPECT_EQ(counterIndex, 0u);
  return current->hideSigner ? nullptr : &readState->signer;
}

CRYPT_PROVIDER_CERT* WINAPI PlayedCertificate(CRYPT_PROVIDER_SGNR* signer, DWORD index) {
  EXPECT_EQ(signer, &readState->signer);
  EXPECT_EQ(index, 0u);
  if (current->hideCertificateContext) readState->certificate.pCert = nullptr;
  return current->hideCertificate ? nullptr : &readState->certificate;
}

}  // namespace

struct PlayedTrust::Patches {
  Standin::ImportPatch verify{"WinVerifyTrust", &PlayedWinVerifyTrust};
  Standin::ImportPatch provider{"WTHelperProvDataFromStateData", &PlayedProvider};
  Standin::ImportPatch signer{"WTHelperGetProvSignerFromChain", &PlayedSigner};
  Standin::ImportPatch certificate{"WTHelperGetProvCertFromChain", &PlayedCertificate};
};

PlayedTrust::PlayedTrust() : patches_(std::make_unique<Patches>()) { current = this; }

PlayedTrust::~PlayedTrust() { current = nullptr; }

std::vector<TrustCall> PlayedTrust::CallsOf(DWORD stateAction) const {
  std::vector<TrustCall> result;
  for (const TrustCall& call : calls) {
    if (call.stateAction == stateAction) result.push_back(call);
  }
  return result;
}

std::string KeyTextOf(const std::vector<std::uint8_t>& bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    char pair[4];
    std::snprintf(pair, sizeof(pair), "%02x", byte);
    text += (text.empty() ? "" : " ") + std::string(pair);
  }
  return text;
}

std::vector<std::uint8_t> EncodeName(const std::wstring& name) {
  DWORD size = 0;
  CertStrToNameW(X509_ASN_ENCODING, name.c_str(), CERT_X500_NAME_STR, nullptr, nullptr, &size,
                 nullptr);
  std::vector<std::uint8_t> encoded(size);
  EXPECT_TRUE(CertStrToNameW(X509_ASN_ENCODING, name.c_str(), CERT_X500_NAME_STR, nullptr,
                             encoded.data(), &size, nullptr));
  return encoded;
}

}  // namespace TestSupport
