#include "ledger/sample_files.h"

#include "base/date_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::wstring EncryptedSamplePath(const std::wstring& folder, const DateTime& day) {
  return folder + L"\\PcmSampleData_" + FormatDateWide(day) + L".json";
}

std::wstring PlainSamplePath(const std::wstring& folder, const DateTime& day) {
  return folder + L"\\unencrypt-PcmSampleData_" + FormatDateWide(day) + L".json";
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
