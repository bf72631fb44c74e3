#pragma once

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <cstddef>

// WINTRUST_DATA as Windows has it since version 8, 88 bytes with the signature settings. Older
// mingw-w64 headers stop at 80 bytes; the SDK's own are used if they have the settings.
namespace Zq::Gantry::Security {

#ifdef WSS_VERIFY_SPECIFIC

using SignatureSettings = WINTRUST_SIGNATURE_SETTINGS;
struct VerificationData : WINTRUST_DATA {};
static_assert(WSS_VERIFY_SPECIFIC == 1 && WSS_GET_SECONDARY_SIG_COUNT == 2);

#else

struct SignatureSettings {
  DWORD cbStruct;
  DWORD dwIndex;
  DWORD dwFlags;
  DWORD cSecondarySigs;      ///< out
  DWORD dwVerifiedSigIndex;  ///< out
  CERT_STRONG_SIGN_PARA* pCryptoPolicy;
};

struct VerificationData {
  DWORD cbStruct;
  void* pPolicyCallbackData;
  void* pSIPClientData;
  DWORD dwUIChoice;
  DWORD fdwRevocationChecks;
  DWORD dwUnionChoice;
  union {
    WINTRUST_FILE_INFO* pFile;
    WINTRUST_CATALOG_INFO* pCatalog;
  };
  DWORD dwStateAction;
  HANDLE hWVTStateData;
  wchar_t* pwszURLReference;
  DWORD dwProvFlags;
  DWORD dwUIContext;
  SignatureSettings* pSignatureSettings;
};

#endif

/// Flags of SignatureSettings: the signature that dwIndex names and no other, and how many
/// secondary ones there are.
inline constexpr DWORD kVerifySpecific = 0x1;
inline constexpr DWORD kGetSecondarySignatureCount = 0x2;

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
