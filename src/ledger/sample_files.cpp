#include "ledger/sample_files.h"

#include "base/date_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::wstring EncryptedSamplePath(const std::wstring& folder, const DateTime& day) {
  return folder + L"\\PcmSampleData_" + FormatDateWide(day) + L".json";
}

std::wstring PlainSamplePath(const std::wstring& folder, const DateTime& day) {
  return folder + L"\\unencrypt-PcmSampleData_" + FormatDateWide(day) + L".json";
}

// Kept on purpose: as long as the opened blob, though the text fills half of it; the parser ends at
// the first zero byte (test PlainCopyContent.IsAsLongAsTheBlob).
std::string PlainCopyContent(std::string_view opened) {
  std::string content(opened.size(), '\0');
  for (std::size_t i = 0; 2 * i < opened.size(); ++i) content[i] = opened[2 * i];
  return content;
}

std::wstring PlainCopyPath(const std::wstring& encryptedPath) {
  const auto separator = encryptedPath.find_last_of(L"\\/");
  if (separator == std::wstring::npos) return {};
  return encryptedPath.substr(0, separator + 1) + L"unencrypt-" +
         encryptedPath.substr(separator + 1);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
