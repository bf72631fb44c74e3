#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "wattleaf_export.h"

namespace Zq::Gantry::Security {

// The verdicts of WinVerifyTrust with which a signature is listed.

/// ERROR_SUCCESS: verified, and the machine trusts the chain.
inline constexpr std::uint32_t kVerified = 0;
/// CERT_E_EXPIRED: verified, but a certificate of the chain has expired.
inline constexpr std::uint32_t kVerifiedButExpired = 0x800B0101;
/// CERT_E_UNTRUSTEDROOT: the chain ends in a root that the machine does not trust.
inline constexpr std::uint32_t kUntrustedRoot = 0x800B0109;

/// Whether a signature with this verdict is listed. Not the same as trusted: a signature with an
/// unknown root is listed too.
[[nodiscard]] constexpr bool IsListedResult(std::uint32_t result) {
  return result == kVerified || result == kVerifiedButExpired || result == kUntrustedRoot;
}

/// One signature of a file, or one row of a subject table.
struct WATTLEAF_API SignerDescriptor {
  SignerDescriptor() = default;
  /// A table row. The order of the arguments differs from that of the fields; `publicKey` stays
  /// empty.
  SignerDescriptor(std::wstring rowCommonName, std::wstring rowOrganizationalUnit,
                   std::wstring rowLocality, std::wstring rowOrganization, std::wstring rowState,
                   std::wstring rowCountry, std::wstring rowIssuer);

  /// DER RSAPublicKey of the signer's certificate: lower-case hexadecimal byte pairs, separated by
  /// single blanks. Empty if the signer could not be read, and in table rows.
  std::string publicKey;
  /// The result of WinVerifyTrust for this signature; without meaning in table rows.
  std::uint32_t verifyResult = 0;
  // Fields of the subject. Empty if the subject lacks the key; only common names are compared.

  /// Subject key "CN".
  std::wstring commonName;
  /// Subject key "OU".
  std::wstring organizationalUnit;
  /// Subject key "O".
  std::wstring organization;
  /// Subject key "L".
  std::wstring locality;
  /// Subject key "S".
  std::wstring state;
  /// Subject key "C".
  std::wstring country;
  /// The issuer's common name in table rows; always empty for a signature.
  std::wstring issuer;
};

/// The signatures of one file, in the order in which they were verified.
using SignatureList = std::vector<SignerDescriptor>;

/// Public keys in the text form of SignerDescriptor::publicKey.
using KeyList = std::vector<std::string>;

}  // namespace Zq::Gantry::Security
