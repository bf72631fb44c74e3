#include "security/trust/fake_trust.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <type_traits>

#include "security/trust/fake_catalogs.h"
#include "security/trust/wintrust_layout.h"

namespace TestSupport {

using Zq::Gantry::Security::VerificationData;

namespace {

FakeTrust* currentTrust = nullptr;

// The object of a state handle: the structures that the reading calls return.
struct FakeState {
  explicit FakeState(const FakeSignature& signature)
      : key(signature.key),
        subject(signature.encodedSubject.empty() ? EncodeName(signature.subject)
                                                 : signature.encodedSubject),
        issuer(EncodeName(signature.issuer)) {
    info.SubjectPublicKeyInfo.PublicKey.pbData = key.data();
    info.SubjectPublicKeyInfo.PublicKey.cbData = static_cast<DWORD>(key.size());
    info.Subject = {static_cast<DWORD>(subject.size()), subject.data()};
    info.Issuer = {static_cast<DWORD>(issuer.size()), issuer.data()};
    context.pCertInfo = &info;
    certificate.pCert = &context;
  }

  void Close() {
    isOpen = false;
    for (auto* bytes : {&key, &subject, &issuer}) std::fill(bytes->begin(), bytes->end(), 0xCC);
  }

  bool isOpen = true;
  std::vector<std::uint8_t> key;
  std::vector<std::uint8_t> subject;
  std::vector<std::uint8_t> issuer;
  CERT_INFO info{};
  CERT_CONTEXT context{};
  CRYPT_PROVIDER_DATA provider{};
  CRYPT_PROVIDER_SGNR signer{};
  CRYPT_PROVIDER_CERT certificate{};
};

// Kept after their close, so that a late read fails the test and no handle value is used twice.
std::vector<std::unique_ptr<FakeState>> states;

// The state whose provider data was returned last; one verification at a time.
FakeState* readState = nullptr;

void NoteTrustCall(const std::string& call) {
  if (currentTrust->record != nullptr) currentTrust->record->Add(call);
}

// Fails the test if the handle is no open state.
FakeState* FindOpenState(HANDLE handle, const char* call) {
  for (const auto& state : states) {
    if (state.get() == handle && state->isOpen) return state.get();
  }
  ADD_FAILURE() << call << " of a state that is not open";
  return nullptr;
}

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
  call.hasPolicy = data.pSignatureSettings->pCryptoPolicy != nullptr;
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
  if (!currentTrust->secondaryCounts) {
    count = signatures > 0 ? static_cast<DWORD>(signatures - 1) : 0;
  } else if (verifyNumber < currentTrust->secondaryCounts->size()) {
    count = (*currentTrust->secondaryCounts)[verifyNumber];
  }
}

void ExpectNoStateIsOverwritten(const VerificationData& data) {
  EXPECT_EQ(data.hWVTStateData, nullptr) << "the previous state is overwritten";
  if (data.dwUnionChoice != WTD_CHOICE_CATALOG) return;
  EXPECT_TRUE(FakeCatalogs::IsOpenContext(data.pCatalog->hCatAdmin))
      << "verified through a context that is not open";
}

LONG Verify(VerificationData& data) {
  const bool isFile = data.dwUnionChoice == WTD_CHOICE_FILE;
  const DWORD index = data.pSignatureSettings->dwIndex;
  NoteTrustCall((isFile ? "verify embedded " : "verify catalog ") + std::to_string(index));
  ExpectNoStateIsOverwritten(data);

  const auto& signatures = isFile ? currentTrust->embedded : currentTrust->byCatalog;
  WriteSecondaryCount(data.pSignatureSettings->cSecondarySigs, signatures.size(),
                      currentTrust->VerifyCalls().size() - 1);
  // An index after the last signature finds the last one again.
  const FakeSignature none{TRUST_E_NOSIGNATURE, {0}, L"CN=None", L"CN=None", {}};
  const FakeSignature& signature =
      signatures.empty() ? none : signatures[std::min<std::size_t>(index, signatures.size() - 1)];
  if (!currentTrust->leaveStateNull) {
    states.push_back(std::make_unique<FakeState>(signature));
    data.hWVTStateData = states.back().get();
    ++currentTrust->openStates;
  }
  return signature.verdict;
}

void Close(VerificationData& data) {
  NoteTrustCall("close");
  // The system may write to the settings until the call returns.
  std::memset(data.pSignatureSettings, 0xCC, sizeof(*data.pSignatureSettings));
  if (currentTrust->leaveStateNull && data.hWVTStateData == nullptr) return;
  FakeState* state = FindOpenState(data.hWVTStateData, "close");
  if (state == nullptr) return;
  state->Close();
  --currentTrust->openStates;
}

LONG WINAPI FakeWinVerifyTrust(HWND window, GUID* action, LPVOID pointer) {
  auto& data = *static_cast<VerificationData*>(pointer);
  currentTrust->calls.push_back(Describe(window, *action, data));
  if (data.dwStateAction == WTD_STATEACTION_VERIFY) return Verify(data);
  EXPECT_EQ(data.dwStateAction, static_cast<DWORD>(WTD_STATEACTION_CLOSE));
  Close(data);
  return 0;
}

CRYPT_PROVIDER_DATA* WINAPI FakeProvider(HANDLE state) {
  NoteTrustCall("provider");
  readState = FindOpenState(state, "reading");
  if (currentTrust->hideProvider || readState == nullptr) return nullptr;
  return &readState->provider;
}

CRYPT_PROVIDER_SGNR* WINAPI FakeSigner(CRYPT_PROVIDER_DATA* provider, DWORD index,
                                       BOOL isCounterSigner, DWORD counterIndex) {
  NoteTrustCall("signer");
  EXPECT_EQ(provider, &readState->provider);
  EXPECT_EQ(index, 0u);
  EXPECT_FALSE(isCounterSigner);
  EXPECT_EQ(counterIndex, 0u);
  return currentTrust->hideSigner ? nullptr : &readState->signer;
}

CRYPT_PROVIDER_CERT* WINAPI FakeCertificate(CRYPT_PROVIDER_SGNR* signer, DWORD index) {
  NoteTrustCall("certificate");
  EXPECT_EQ(signer, &readState->signer);
  EXPECT_EQ(index, 0u);
  if (currentTrust->hideCertificateContext) readState->certificate.pCert = nullptr;
  return currentTrust->hideCertificate ? nullptr : &readState->certificate;
}

// Records which name of the state is read; the system converts it.
decltype(&CertNameToStrW) realCertNameToStr = nullptr;

DWORD WINAPI RecordingNameToStr(DWORD encoding, PCERT_NAME_BLOB name, DWORD format, LPWSTR text,
                                DWORD chars) {
  if (readState != nullptr && name->pbData == readState->subject.data()) NoteTrustCall("subject");
  if (readState != nullptr && name->pbData == readState->issuer.data()) NoteTrustCall("issuer");
  return realCertNameToStr(encoding, name, format, text, chars);
}

}  // namespace

struct FakeTrust::Patches {
  Patches() {
    auto* original = names.Original<std::remove_pointer_t<decltype(&CertNameToStrW)>>();
    if (original != &RecordingNameToStr) realCertNameToStr = original;
  }

  Standin::ImportPatch verify{"WinVerifyTrust", &FakeWinVerifyTrust};
  Standin::ImportPatch provider{"WTHelperProvDataFromStateData", &FakeProvider};
  Standin::ImportPatch signer{"WTHelperGetProvSignerFromChain", &FakeSigner};
  Standin::ImportPatch certificate{"WTHelperGetProvCertFromChain", &FakeCertificate};
  Standin::ImportPatch names{"CertNameToStrW", &RecordingNameToStr};
};

FakeTrust::FakeTrust() : patches_(std::make_unique<Patches>()) { currentTrust = this; }

FakeTrust::~FakeTrust() {
  EXPECT_EQ(openStates, 0);
  currentTrust = nullptr;
  readState = nullptr;
}

std::vector<TrustCall> FakeTrust::CallsOf(DWORD stateAction) const {
  std::vector<TrustCall> result;
  for (const TrustCall& call : calls) {
    if (call.stateAction == stateAction) result.push_back(call);
  }
  return result;
}

FakeSignature Signature(LONG verdict, std::uint8_t lastKeyByte) {
  FakeSignature signature;
  signature.verdict = verdict;
  signature.key = {0x30, lastKeyByte};
  return signature;
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
