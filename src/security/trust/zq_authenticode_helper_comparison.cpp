#include <algorithm>

#include "security/trust/verify_result.h"
#include "security/trust/zq_authenticode_helper.h"

namespace Zq::Gantry::Security {

namespace {

template <typename Field>
bool ShareValue(const SignatureList& first, const SignatureList& second, Field field) {
  return std::any_of(first.begin(), first.end(), [&](const SignerDescriptor& one) {
    return std::any_of(second.begin(), second.end(),
                       [&](const SignerDescriptor& other) { return one.*field == other.*field; });
  });
}

// Nothing without a key is ever trusted: it equals neither another such signer nor an empty entry.
void DropUnreadableKeys(SignatureList& signatures) {
  std::erase_if(signatures, [](const SignerDescriptor& one) { return one.publicKey.empty(); });
}

}  // namespace

bool ZQAuthenticodeHelper::IsTrustedByWindows(SignatureList signatures) {
  return std::any_of(signatures.begin(), signatures.end(), [](const SignerDescriptor& signature) {
    return signature.verifyResult == kVerified || signature.verifyResult == kVerifiedButExpired;
  });
}

bool ZQAuthenticodeHelper::IsTrustedByMeridian(SignatureList signatures, const KeyList* keys) {
  if (keys == nullptr) return false;
  DropUnreadableKeys(signatures);
  return std::any_of(signatures.begin(), signatures.end(), [&](const SignerDescriptor& signature) {
    return std::find(keys->begin(), keys->end(), signature.publicKey) != keys->end();
  });
}

bool ZQAuthenticodeHelper::SubjectsMatch(SignatureList first, SignatureList second) {
  return ShareValue(first, second, &SignerDescriptor::commonName);
}

bool ZQAuthenticodeHelper::PublicKeysMatch(SignatureList first, SignatureList second) {
  DropUnreadableKeys(first);
  return ShareValue(first, second, &SignerDescriptor::publicKey);
}

}  // namespace Zq::Gantry::Security
