#include <string_view>

#include "security/trust/zq_authenticode_helper.h"

namespace Zq::Gantry::Security {

namespace {

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

}  // namespace Zq::Gantry::Security
