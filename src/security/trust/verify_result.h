#pragma once

#include <cstdint>

// The verdicts of WinVerifyTrust that put a signature on a list.
namespace Zq::Gantry::Security {

inline constexpr std::uint32_t kVerified = 0;
/// CERT_E_EXPIRED: verified, but a certificate of the chain has expired.
inline constexpr std::uint32_t kVerifiedButExpired = 0x800B0101;
/// CERT_E_UNTRUSTEDROOT: the chain ends in a root that the machine does not trust.
inline constexpr std::uint32_t kUntrustedRoot = 0x800B0109;

constexpr bool IsListedResult(std::uint32_t result) {
  return result == kVerified || result == kVerifiedButExpired || result == kUntrustedRoot;
}

}  // namespace Zq::Gantry::Security
