#include "ledger/sample_files.h"

#include <algorithm>
#include <cstddef>

#include "base/date_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr wchar_t kPlainCopyPrefix[] = L"unencrypt-";

std::wstring SampleFileName(const DateTime& day) {
  return L"PcmSampleData_" + FormatDateWide(day) + L".json";
}

}  // namespace

std::wstring EncryptedSamplePath(const std::wstring& folder, const DateTime& day) {
  return folder + L"\\" + SampleFileName(day);
}

std::wstring PlainSamplePath(const std::wstring& folder, const DateTime& day) {
  return folder + L"\\" + kPlainCopyPrefix + SampleFileName(day);
}

std::wstring PlainCopyPath(const std::wstring& encryptedPath) {
  const auto separator = encryptedPath.find_last_of(L"\\/");
  if (separator == std::wstring::npos) return {};
  return encryptedPath.substr(0, separator + 1) + kPlainCopyPrefix +
         encryptedPath.substr(separator + 1);
}

// Kept on purpose: as long as the blob, though the text fills half of it; the JSON parser ends at
// the first zero byte (test PlainCopyContent.IsAsLongAsTheBlob).
std::string PlainCopyContent(std::string_view decrypted, std::string memory) {
  memory.resize(decrypted.size());
  const auto half = static_cast<std::ptrdiff_t>((decrypted.size() + 1) / 2);
  for (std::size_t i = 0; 2 * i < decrypted.size(); ++i) memory[i] = decrypted[2 * i];
  std::fill(memory.begin() + half, memory.end(), '\0');
  return memory;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
