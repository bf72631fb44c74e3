// mingw-w64's, with the structure of a signature's settings, which Windows 8 added.
#pragma once
#define WINTRUST_DATA WINTRUST_DATA_OLD_
#define PWINTRUST_DATA PWINTRUST_DATA_OLD_
#define _WINTRUST_DATA _WINTRUST_DATA_OLD_
#include_next <wintrust.h>
#undef WINTRUST_DATA
#undef PWINTRUST_DATA
#undef _WINTRUST_DATA
#define WSS_VERIFY_SPECIFIC 0x00000001
#define WSS_GET_SECONDARY_SIG_COUNT 0x00000002
typedef struct WINTRUST_SIGNATURE_SETTINGS_ {
  DWORD cbStruct;
  DWORD dwIndex;
  DWORD dwFlags;
  DWORD cSecondarySigs;
  DWORD dwVerifiedSigIndex;
  PCERT_STRONG_SIGN_PARA pCryptoPolicy;
} WINTRUST_SIGNATURE_SETTINGS, *PWINTRUST_SIGNATURE_SETTINGS;
typedef struct _WINTRUST_DATA {
  DWORD cbStruct;
  LPVOID pPolicyCallbackData;
  LPVOID pSIPClientData;
  DWORD dwUIChoice;
  DWORD fdwRevocationChecks;
  DWORD dwUnionChoice;
  union {
    struct WINTRUST_FILE_INFO_* pFile;
    struct WINTRUST_CATALOG_INFO_* pCatalog;
    struct WINTRUST_BLOB_INFO_* pBlob;
    struct WINTRUST_SGNR_INFO_* pSgnr;
    struct WINTRUST_CERT_INFO_* pCert;
  };
  DWORD dwStateAction;
  HANDLE hWVTStateData;
  WCHAR* pwszURLReference;
  DWORD dwProvFlags;
  DWORD dwUIContext;
  WINTRUST_SIGNATURE_SETTINGS* pSignatureSettings;
} WINTRUST_DATA, *PWINTRUST_DATA;
