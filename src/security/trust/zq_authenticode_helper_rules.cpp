#include "security/trust/zq_authenticode_helper.h"

#include <algorithm>
#include <string_view>

namespace Zq::Gantry::Security {

namespace {

template <typename Field>
bool ShareValue(const SignatureList& first, const SignatureList& second, Field field) {
  return std::any_of(first.begin(), first.end(), [&](const SignerDescriptor& one) {
    return std::any_of(second.begin(), second.end(),
                       [&](const SignerDescriptor& other) { return one.*field == other.*field; });
  });
}

// A signer without a readable key must match neither another such signer nor an empty list entry.
void DropUnreadableKeys(SignatureList& signatures) {
  std::erase_if(signatures, [](const SignerDescriptor& one) { return one.publicKey.empty(); });
}

struct SubjectField {
  std::wstring_view key;
  std::wstring SignerDescriptor::*field;
};

constexpr SubjectField kSubjectFields[] = {
    {L"CN", &SignerDescriptor::commonName}, {L"OU", &SignerDescriptor::organizationalUnit},
    {L"C", &SignerDescriptor::country},     {L"S", &SignerDescriptor::state},
    {L"L", &SignerDescriptor::locality},    {L"O", &SignerDescriptor::organization},
};

constexpr std::wstring_view kLineEnd = L"\r\n";

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

void ZQAuthenticodeHelper::ParseSubject(const std::wstring& subject, SignerDescriptor& record) {
  std::size_t begin = 0;
  while (begin < subject.size()) {
    const std::size_t end = subject.find(kLineEnd, begin);
    ParseSubjectField(subject.substr(begin, end - begin), record);
    if (end == std::wstring::npos) return;
    begin = end + kLineEnd.size();
  }
}

void ZQAuthenticodeHelper::ParseSubjectField(const std::wstring& line, SignerDescriptor& record) {
  const std::size_t equals = line.find(L'=');
  if (equals == std::wstring::npos) return;

  std::wstring key = line.substr(0, equals);
  const std::size_t blank = key.find(L' ');
  if (blank != std::wstring::npos) key.erase(0, blank + 1);

  for (const SubjectField& known : kSubjectFields) {
    if (key != known.key) continue;
    record.*known.field = line.substr(equals + 1);
    return;
  }
}

std::string ZQAuthenticodeHelper::BytesToHexText(const std::uint8_t* bytes, std::size_t count) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  if (bytes == nullptr) return text;

  text.reserve(count * 3);
  for (std::size_t i = 0; i < count; ++i) {
    text += kDigits[bytes[i] >> 4];
    text += kDigits[bytes[i] & 0x0F];
    text += ' ';
  }
  return text;
}

std::string ZQAuthenticodeHelper::TrimText(const std::string& text, const char* characters) {
  const std::size_t first = text.find_first_not_of(characters);
  // Kept on purpose: with nothing left, `first` is npos and substr throws std::out_of_range.
  return text.substr(first, text.find_last_not_of(characters) - first + 1);
}

}  // namespace Zq::Gantry::Security
