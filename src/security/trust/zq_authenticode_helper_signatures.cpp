#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <softpub.h>

#include <cstdint>
#include <iterator>
#include <utility>

#include "logging/trace_logger.h"
#include "security/trust/catalog_member.h"
#include "security/trust/disk_file.h"
#include "security/trust/wintrust_layout.h"

namespace Zq::Gantry::Security {

using Logging::LogManager;

namespace {

// Far more than any real file has. Ends the loop if the count is forged.
constexpr std::uint64_t kMaxSignaturesOfASource = 64;

LONG CallWinVerifyTrust(VerificationData& data, DWORD stateAction) {
  GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
  data.dwStateAction = stateAction;
  return WinVerifyTrust(/*hwnd=*/nullptr, &action, &data);
}

// Closes the state of a verification, after any verdict.
class ScopedTrustState {
 public:
  explicit ScopedTrustState(VerificationData& data) : data_(data) {}
  ScopedTrustState(const ScopedTrustState&) = delete;
  ScopedTrustState& operator=(const ScopedTrustState&) = delete;
  ~ScopedTrustState() {
    CallWinVerifyTrust(data_, WTD_STATEACTION_CLOSE);
    data_.hWVTStateData = nullptr;
  }

 private:
  VerificationData& data_;
};

// Returns how many secondary signatures the verification counted. That is read while the state is
// open, since the call that closes it may write to the settings.
DWORD VerifyOne(VerificationData& data, SignatureList& signatures) {
  const auto result = static_cast<std::uint32_t>(CallWinVerifyTrust(data, WTD_STATEACTION_VERIFY));
  const ScopedTrustState state(data);
  const DWORD secondaryCount = data.pSignatureSettings->cSecondarySigs;
  if (!IsListedResult(result)) return secondaryCount;

  SignerDescriptor signer = ZQAuthenticodeHelper::GetSignerDescriptor(data.hWVTStateData);
  signer.verifyResult = result;
  signatures.push_back(std::move(signer));
  return secondaryCount;
}

SignatureSettings SettingsFor(DWORD index, DWORD secondaryCount) {
  SignatureSettings settings{};
  settings.cbStruct = sizeof(settings);
  settings.dwIndex = index;
  settings.dwFlags = kVerifySpecific | kGetSecondarySignatureCount;
  settings.cSecondarySigs = secondaryCount;  // kept if a verification does not write it
  return settings;
}

// The primary signature and all nested ones, each verified by itself.
SignatureList VerifyEach(VerificationData data) {
  SignatureSettings settings{};
  data.pSignatureSettings = &settings;

  SignatureList signatures;
  DWORD secondaryCount = 0;
  for (std::uint64_t index = 0; index < kMaxSignaturesOfASource; ++index) {
    settings = SettingsFor(static_cast<DWORD>(index), secondaryCount);
    secondaryCount = VerifyOne(data, signatures);
    if (index + 1 > secondaryCount) break;
  }
  return signatures;
}

SignatureList VerifyByCatalog(const wchar_t* path) {
  VerificationData data{};
  if (ZQAuthenticodeHelper::GetSecurityCatalogInfo(path, data) != 1) return {};
  const UniqueCatalogInfo catalog(data.pCatalog);
  return VerifyEach(data);
}

SignatureList VerifyEmbedded(const wchar_t* path) {
  if (IsKnownNotToBeADiskFile(path)) return {};

  WINTRUST_FILE_INFO file{};
  file.cbStruct = sizeof(file);
  file.pcwszFilePath = path;

  VerificationData data{};
  data.cbStruct = sizeof(data);
  data.dwUIChoice = WTD_UI_NONE;
  data.fdwRevocationChecks = WTD_REVOKE_NONE;
  data.dwUnionChoice = WTD_CHOICE_FILE;
  data.pFile = &file;
  return VerifyEach(data);
}

const char* YesOrNo(bool value) { return value ? "yes" : "no"; }

}  // namespace

bool ZQAuthenticodeHelper::IsFileTrusted(const wchar_t* path, const KeyList* keys) {
  if (path == nullptr || keys == nullptr) return false;

  const SignatureList signatures = GetAllSignatures(path);
  if (signatures.empty() || keys->empty()) return false;

  const bool byWindows = IsTrustedByWindows(signatures);
  const bool byMeridian = IsTrustedByMeridian(signatures, keys);
  LogManager::GetLogger()->LogInfo(
      L"Security - IsFileTrusted - trusted by windows = %S, trusted by Meridian = %S",
      YesOrNo(byWindows), YesOrNo(byMeridian));
  return byWindows && byMeridian;
}

SignatureList ZQAuthenticodeHelper::GetAllSignatures(const wchar_t* path) {
  SignatureList signatures = GetSignatures(path, true);
  SignatureList embedded = GetSignatures(path, false);
  signatures.insert(signatures.end(), std::make_move_iterator(embedded.begin()),
                    std::make_move_iterator(embedded.end()));
  return signatures;
}

SignatureList ZQAuthenticodeHelper::GetSignatures(const wchar_t* path, bool useCatalog) {
  if (path == nullptr) return {};
  return useCatalog ? VerifyByCatalog(path) : VerifyEmbedded(path);
}

}  // namespace Zq::Gantry::Security
