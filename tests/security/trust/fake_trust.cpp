#include "security/trust/fake_trust.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <type_traits>

#include "security/trust/fake_catalogs.h"
#include "security/trust/wintrust_layout.h"

namespace TestSupport {

using Zq::Gantry::Security::VerificationData;

namespace {

FakeTrust* current = nullptr;

// What an open state handle stands for: the structures that the reading calls hand out.
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

// Kept after their close, so that a late reader finds nothing, and no handle is ever given twice.
std::vector<std::unique_ptr<FakeState>> states;

// The state whose provider data or signer was handed out last; one verification at a time.
FakeState* readState = nullptr;

void Note(const std::string& call) {
  if (current->record != nullptr) current->record->Add(call);
}

// Fails the test where the handle is no open state.
FakeState* FindOpen(HANDLE handle, const char* call) {
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
  if (!current->secondaryCounts) {
    count = signatures > 0 ? static_cast<DWORD>(signatures - 1) : 0;
  } else if (verifyNumber < current->secondaryCounts->size()) {
    count = (*current->secondaryCounts)[verifyNumber];
  }
}

void ExpectNothingIsLost(const VerificationData& data) {
  EXPECT_EQ(data.hWVTStateData, nullptr) << "the state before is lost";
  if (data.dwUnionChoice != WTD_CHOICE_CATALOG) return;
  EXPECT_TRUE(FakeCatalogs::IsOpenContext(data.pCatalog->hCatAdmin))
      << "verified through a context that is not open";
}

LONG Verify(VerificationData& data) {
  const bool isFile = data.dwUnionChoice == WTD_CHOICE_FILE;
  const DWORD asked = data.pSignatureSettings->dwIndex;
  Note((isFile ? "verify embedded " : "verify catalog ") + std::to_string(asked));
  ExpectNothingIsLost(data);

  const auto& signatures = isFile ? current->embedded : current->byCatalog;
  WriteSecondaryCount(data.pSignatureSettings->cSecondarySigs, signatures.size(),
                      current->VerifyCalls().size() - 1);
  // An index beyond the last signature finds the last one again.
  const FakeSignature none{current->verdictOfNone, {0}, L"CN=Nobody", L"CN=Nobody", {}};
  const FakeSignature& signature =
      signatures.empty() ? none : signatures[std::min<std::size_t>(asked, signatures.size() - 1)];
  if (!current->leaveStateNull) {
    states.push_back(std::make_unique<FakeState>(signature));
    data.hWVTStateData = states.back().get();
    ++current->openStates;
  }
  return signature.verdict;
}

void Close(VerificationData& data) {
  Note("close");
  // The last thing that the call may do with the settings is to write to them.
  std::memset(data.pSignatureSettings, 0xCC, sizeof(*data.pSignatureSettings));
  if (current->leaveStateNull && data.hWVTStateData == nullptr) return;
  FakeState* state = FindOpen(data.hWVTStateData, "close");
  if (state == nullptr) return;
  state->Close();
  --current->openStates;
}

LONG WINAPI FakeWinVerifyTrust(HWND window, GUID* action, LPVOID pointer) {
  auto& data = *static_cast<VerificationData*>(pointer);
  current->calls.push_back(Describe(window, *action, data));
  if (data.dwStateAction == WTD_STATEACTION_VERIFY) return Verify(data);
  EXPECT_EQ(data.dwStateAction, static_cast<DWORD>(WTD_STATEACTION_CLOSE));
  Close(data);
  return 0;
}

CRYPT_PROVIDER_DATA* WINAPI FakeProvider(HANDLE state) {
  Note("provider");
  readState = FindOpen(state, "reading");
  if (current->hideProvider || readState == nullptr) return nullptr;
  return &readState->provider;
}

CRYPT_PROVIDER_SGNR* WINAPI FakeSigner(CRYPT_PROVIDER_DATA* provider, DWORD index,
                                       BOOL isCounterSigner, DWORD counterIndex) {
  Note("signer");
  EXPECT_EQ(provider, &readState->provider);
  EXPECT_EQ(index, 0u);
  EXPECT_FALSE(isCounterSigner);
  EXPECT_EQ(counterIndex, 0u);
  return current->hideSigner ? nullptr : &readState->signer;
}

CRYPT_PROVIDER_CERT* WINAPI FakeCertificate(CRYPT_PROVIDER_SGNR* signer, DWORD index) {
  Note("certificate");
  EXPECT_EQ(signer, &readState->signer);
  EXPECT_EQ(index, 0u);
  if (current->hideCertificateContext) readState->certificate.pCert = nullptr;
  return current->hideCertificate ? nullptr : &readState->certificate;
}

// Which of the names that the state has handed out is read; the conversion itself is the system's.
decltype(&CertNameToStrW) realNameToStr = nullptr;

DWORD WINAPI SeenNameToStr(DWORD encoding, PCERT_NAME_BLOB name, DWORD format, LPWSTR text,
                           DWORD chars) {
  if (readState != nullptr && name->pbData == readState->subject.data()) Note("subject");
  if (readState != nullptr && name->pbData == readState->issuer.data()) Note("issuer");
  return realNameToStr(encoding, name, format, text, chars);
}

}  // namespace

struct FakeTrust::Patches {
  Patches() {
    auto* before = names.Original<std::remove_pointer_t<decltype(&CertNameToStrW)>>();
    if (before != &SeenNameToStr) realNameToStr = before;
  }

  Standin::ImportPatch verify{"WinVerifyTrust", &FakeWinVerifyTrust};
  Standin::ImportPatch provider{"WTHelperProvDataFromStateData", &FakeProvider};
  Standin::ImportPatch signer{"WTHelperGetProvSignerFromChain", &FakeSigner};
  Standin::ImportPatch certificate{"WTHelperGetProvCertFromChain", &FakeCertificate};
  Standin::ImportPatch names{"CertNameToStrW", &SeenNameToStr};
};

FakeTrust::FakeTrust() : patches_(std::make_unique<Patches>()) { current = this; }

FakeTrust::~FakeTrust() {
  EXPECT_EQ(openStates, 0);
  current = nullptr;
  readState = nullptr;
}

std::vector<TrustCall> FakeTrust::CallsOf(DWORD stateAction) const {
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
