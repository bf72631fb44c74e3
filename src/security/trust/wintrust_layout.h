#pragma once

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <cstddef>

// WINTRUST_DATA as Windows has it since version 8, 88 bytes with the signature settings. Older
// mingw-w64 headers stop at 80 bytes; the SDK's own are used if they have the settings.
//
// VerificationData is a type of its own in both cases, so that zq_authenticode_helper.h can declare
// it without a Windows header. One verification passes the same object to WinVerifyTrust twice:
//
//   dwStateAction             call                         hWVTStateData
//   WTD_STATEACTION_VERIFY    verifies, returns verdict    may be open after any verdict
//   WTD_STATEACTION_CLOSE     releases the state           must not be used afterwards
namespace Zq::Gantry::Security {

#ifdef WSS_VERIFY_SPECIFIC

/// The SDK's own structures; the comments in the other branch apply to them too.
using SignatureSettings = WINTRUST_SIGNATURE_SETTINGS;
struct VerificationData : WINTRUST_DATA {};
static_assert(WSS_VERIFY_SPECIFIC == 1 && WSS_GET_SECONDARY_SIG_COUNT == 2);

#else

/// WINTRUST_SIGNATURE_SETTINGS: which of a file's signatures is verified.
struct SignatureSettings {
  DWORD cbStruct;                        ///< bytes of this structure
  DWORD dwIndex;                         ///< 0 is the primary signature
  DWORD dwFlags;                         ///< the two below
  DWORD cSecondarySigs;                  ///< out: number of secondary signatures
  DWORD dwVerifiedSigIndex;              ///< out: the signature that was verified
  CERT_STRONG_SIGN_PARA* pCryptoPolicy;  ///< null: no policy of our own
};

/// WINTRUST_DATA: the subject of a verification, its state and its settings. What it points to
/// stays the caller's.
struct VerificationData {
  DWORD cbStruct;             ///< bytes of this structure
  void* pPolicyCallbackData;  ///< null
  void* pSIPClientData;       ///< null
  DWORD dwUIChoice;           ///< WTD_UI_NONE
  DWORD fdwRevocationChecks;  ///< WTD_REVOKE_NONE
  DWORD dwUnionChoice;        ///< which pointer of the union is set: WTD_CHOICE_FILE or _CATALOG
  union {
    WINTRUST_FILE_INFO* pFile;
    WINTRUST_CATALOG_INFO* pCatalog;
  };
  DWORD dwStateAction;                    ///< WTD_STATEACTION_VERIFY, then _CLOSE
  HANDLE hWVTStateData;                   ///< out: open from the one call to the other
  wchar_t* pwszURLReference;              ///< reserved
  DWORD dwProvFlags;                      ///< 0
  DWORD dwUIContext;                      ///< 0
  SignatureSettings* pSignatureSettings;  ///< not null here
};

#endif

// Flags of SignatureSettings.
inline constexpr DWORD kVerifySpecific = 0x1;              ///< only the signature of dwIndex
inline constexpr DWORD kGetSecondarySignatureCount = 0x2;  ///< fill in cSecondarySigs

static_assert(sizeof(VerificationData) == 88);
static_assert(offsetof(VerificationData, dwUIChoice) == 24);
static_assert(offsetof(VerificationData, fdwRevocationChecks) == 28);
static_assert(offsetof(VerificationData, dwUnionChoice) == 32);
static_assert(offsetof(VerificationData, pFile) == 40);
static_assert(offsetof(VerificationData, pCatalog) == 40);
static_assert(offsetof(VerificationData, dwStateAction) == 48);
static_assert(offsetof(VerificationData, hWVTStateData) == 56);
static_assert(offsetof(VerificationData, pwszURLReference) == 64);
static_assert(offsetof(VerificationData, dwProvFlags) == 72);
static_assert(offsetof(VerificationData, dwUIContext) == 76);
static_assert(offsetof(VerificationData, pSignatureSettings) == 80);

static_assert(sizeof(SignatureSettings) == 32);
static_assert(offsetof(SignatureSettings, dwIndex) == 4);
static_assert(offsetof(SignatureSettings, dwFlags) == 8);
static_assert(offsetof(SignatureSettings, cSecondarySigs) == 12);
static_assert(offsetof(SignatureSettings, dwVerifiedSigIndex) == 16);
static_assert(offsetof(SignatureSettings, pCryptoPolicy) == 24);

static_assert(sizeof(WINTRUST_FILE_INFO) == 32);
static_assert(sizeof(WINTRUST_CATALOG_INFO) == 72);
static_assert(offsetof(WINTRUST_CATALOG_INFO, hCatAdmin) == 64);

}  // namespace Zq::Gantry::Security
