#include "security/access/manifest_exemption.h"

#include <string>
#include <utility>

#include "security/access/white_list_rows.h"

namespace Zq::Gantry::Security {

using Server::ClientVersion;
using Server::Uwp::UwpInformation;
using Server::Win32::Win32Information;
using UwpCheck = UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion;
using Win32Check = Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion;

namespace {

bool IsUpTo(const ClientVersion& limit, const ClientVersion& client) {
  if (client.Major != limit.Major) return client.Major < limit.Major;
  return client.Minor <= limit.Minor;
}

void FoldLetters(std::wstring& text) {
  for (wchar_t& character : text) {
    if (character < L'A' || character > L'Z') continue;
    character = static_cast<wchar_t>(character - L'A' + L'a');
  }
}

}  // namespace

UwpCheck::UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion(
    std::shared_ptr<std::vector<UwpMatchingDescriptor>> list,
    std::shared_ptr<UwpInformation> client)
    : list_(std::move(list)), client_(std::move(client)) {}
UwpCheck::UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion(const UwpCheck& other) = default;
UwpCheck& UwpCheck::operator=(const UwpCheck& other) = default;
UwpCheck::~UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion() = default;

bool UwpCheck::IsAnException() {
  if (!list_ || !client_) return false;
  return AnyRowFits(*list_, [this](const UwpMatchingDescriptor& row) {
    return row.Information.FamilyName == client_->FamilyName &&
           IsUpTo(row.Information.Version, client_->Version);
  });
}

Win32Check::Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion(
    std::shared_ptr<std::vector<Win32MatchingDescriptor>> list,
    std::shared_ptr<Win32Information> client)
    : list_(std::move(list)), client_(std::move(client)) {}
Win32Check::Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion(const Win32Check& other) =
    default;
Win32Check& Win32Check::operator=(const Win32Check& other) = default;
Win32Check::~Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion() = default;

bool Win32Check::IsAnException() {
  if (!list_ || !client_) return false;
  // Kept on purpose: the shared client stays changed, even if the list is empty (test
  // Win32Exemption.LeavesTheNameFoldedEvenWithAnEmptyList).
  FoldLetters(client_->Name);
  return AnyRowFits(*list_, [this](const Win32MatchingDescriptor& row) {
    return row.Information.Name == client_->Name &&
           IsUpTo(row.Information.Version, client_->Version);
  });
}

}  // namespace Zq::Gantry::Security
