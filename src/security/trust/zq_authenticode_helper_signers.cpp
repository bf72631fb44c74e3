#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <wincrypt.h>
#include <wintrust.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "logging/trace_logger.h"
#include "platform/win32/owners.h"

namespace Zq::Gantry::Security {

using Logging::LogManager;
using Platform::UniqueHeapBlock;

namespace {

constexpr const char* kBlanks = " \f\n\r\t\v";

// Each relative name on a line of its own as key, "=" and value, without quotes.
constexpr DWORD kNameFormat =
    CERT_X500_NAME_STR | CERT_NAME_STR_NO_QUOTING_FLAG | CERT_NAME_STR_CRLF_FLAG;
static_assert(kNameFormat == 0x18000003);

// The longest text of an encoded name, in characters per byte. The block for a name has room for
// it, because some systems ignore the size that CertNameToStrW is given and write the whole text.
// One attribute of a name, with k bytes of type and v bytes of value:
//
//   part         encoded bytes    characters at most
//   sequence     2
//   type         2 + k            4k: "127." for one byte; "SERIALNUMBER" for three
//   "="                           1
//   value        2 + v            2v + 5: "#" and two digits for each byte of the encoded value;
//                                 2v + 2 for doubled quotes between quotes
//   separator                     3: " + "
//   total        6 + k + v        4k + 2v + 9, less than 4 (6 + k + v)
//
// Longer headers and sets only add bytes; an empty set is a line end, 2 characters for 2 bytes.
constexpr std::uint64_t kCharsPerNameByte = 4;

// The leaf certificate of the first signer; null if any part of it is missing. It belongs to the
// state.
const CERT_INFO* FindSignerCertificate(HANDLE stateData) {
  if (stateData == nullptr) return nullptr;
  CRYPT_PROVIDER_DATA* provider = WTHelperProvDataFromStateData(stateData);
  if (provider == nullptr) return nullptr;
  CRYPT_PROVIDER_SGNR* signer = WTHelperGetProvSignerFromChain(
      provider, /*idxSigner=*/0, /*fCounterSigner=*/FALSE, /*idxCounterSigner=*/0);
  if (signer == nullptr) return nullptr;
  const CRYPT_PROVIDER_CERT* certificate = WTHelperGetProvCertFromChain(signer, /*idxCert=*/0);
  if (certificate == nullptr || certificate->pCert == nullptr) return nullptr;
  return certificate->pCert->pCertInfo;
}

}  // namespace

SignerDescriptor ZQAuthenticodeHelper::GetSignerDescriptor(void* stateData) {
  SignerDescriptor record;
  const CERT_INFO* certificate = FindSignerCertificate(stateData);
  if (certificate == nullptr) return record;

  const CRYPT_BIT_BLOB& key = certificate->SubjectPublicKeyInfo.PublicKey;
  record.publicKey = TrimText(BytesToHexText(key.pbData, key.cbData), kBlanks);

  const std::wstring subject = GetNameText(certificate->Subject);
  // Kept on purpose: the issuer is read, and a failure is logged, but the text is not used.
  static_cast<void>(GetNameText(certificate->Issuer));
  LogManager::GetLogger()->LogInfo(L"Subject = %s", subject.c_str());
  ParseSubject(subject, record);
  return record;
}

std::wstring ZQAuthenticodeHelper::GetNameText(const _CRYPTOAPI_BLOB& nameBlob) {
  const std::uint64_t textChars = std::uint64_t{nameBlob.cbData} * kCharsPerNameByte;
  // Passed to the call, with the terminator; the block has one more for a terminator of ours.
  const auto capacityChars =
      static_cast<DWORD>(std::min<std::uint64_t>(textChars + 1, std::numeric_limits<DWORD>::max()));
  const std::size_t blockBytes = (static_cast<std::size_t>(textChars) + 2) * sizeof(wchar_t);

  const UniqueHeapBlock block(std::malloc(blockBytes));
  if (!block) {
    LogManager::GetLogger()->LogError(L"NULL pointer returned by Malloc() to pszString.");
    return {};
  }
  auto* text = static_cast<wchar_t*>(block.get());
  text[0] = L'\0';
  text[capacityChars] = L'\0';

  auto* name = const_cast<CERT_NAME_BLOB*>(&nameBlob);  // only read
  if (CertNameToStrW(X509_ASN_ENCODING, name, kNameFormat, text, capacityChars) == 0) {
    LogManager::GetLogger()->LogError(L"Error while retrieving Subject field.");
    return {};
  }
  return text;
}

}  // namespace Zq::Gantry::Security
