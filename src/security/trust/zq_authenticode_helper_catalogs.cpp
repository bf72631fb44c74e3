#include "security/trust/zq_authenticode_helper.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "logging/trace_logger.h"
#include "platform/win32/catalog_owners.h"
#include "platform/win32/owners.h"
#include "security/trust/catalog_member.h"
#include "security/trust/disk_file.h"

namespace Zq::Gantry::Security {

using Logging::LogManager;
using Platform::UniqueCatalog;
using Platform::UniqueCatalogAdmin;
using Platform::UniqueFileHandle;

namespace {

static_assert(sizeof(CATALOG_INFO) == 524);

// Keeps the last error of a call that failed.
bool AcquireContext(UniqueCatalogAdmin& admin) {
  if (CryptCATAdminAcquireContext2(admin.out(), /*pgSubsystem=*/nullptr, L"SHA256",
                                   /*pStrongHashPolicy=*/nullptr, /*dwFlags=*/0)) {
    return static_cast<bool>(admin);
  }
  // A failed call has acquired nothing, even if it wrote a value.
  static_cast<void>(admin.release());
  return false;
}

// True when `bytes` holds the whole hash.
bool HashInto(std::vector<std::uint8_t>& bytes, const wchar_t* path, HCATADMIN admin) {
  const UniqueFileHandle file = OpenDiskFile(path);
  if (!file) return false;

  DWORD sizeBytes = 0;
  CryptCATAdminCalcHashFromFileHandle2(admin, file.get(), &sizeBytes, nullptr, /*dwFlags=*/0);
  if (sizeBytes == 0) return false;

  bytes.assign(sizeBytes, 0);
  return CryptCATAdminCalcHashFromFileHandle2(admin, file.get(), &sizeBytes, bytes.data(),
                                              /*dwFlags=*/0) != FALSE;
}

std::wstring ToUpperHexText(const std::vector<std::uint8_t>& bytes) {
  static constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
  std::wstring text;
  text.reserve(bytes.size() * 2);
  for (const std::uint8_t byte : bytes) {
    text += kDigits[byte >> 4];
    text += kDigits[byte & 0x0F];
  }
  return text;
}

// Finds the path of the first catalog that lists the hash; later ones are not looked at.
bool FindCatalog(CatalogMember& member, FileHash& hash) {
  const HCATADMIN admin = member.admin.get();
  const UniqueCatalog catalog(
      {admin, CryptCATAdminEnumCatalogFromHash(admin, hash.bytes.data(),
                                               static_cast<DWORD>(hash.bytes.size()),
                                               /*dwFlags=*/0, /*phPrevCatInfo=*/nullptr)});
  if (!catalog) {
    const DWORD error = GetLastError();
    LogManager::GetLogger()->LogError(
        L"Security - GetSecurityCatalogInfo - Failed during CryptCATAdminEnumCatalogFromHash. "
        L"Error Code = %d",
        static_cast<int>(error));
    return false;
  }

  CATALOG_INFO info{};
  info.cbStruct = sizeof(info);
  if (!CryptCATCatalogInfoFromContext(catalog.get().catalog, &info, /*dwFlags=*/0)) return false;
  // The last character of the copy stays zero, even if the call wrote no terminator.
  std::copy_n(info.wszCatalogFile, member.catalogPath.size() - 1, member.catalogPath.begin());
  return true;
}

void PointAtMember(VerificationData& data, const wchar_t* file, CatalogMember& member) {
  member.pcwszCatalogFilePath = member.catalogPath.data();
  member.pcwszMemberTag = member.memberTag.c_str();
  member.pcwszMemberFilePath = file;
  member.hCatAdmin = member.admin.get();

  data = {};
  data.cbStruct = sizeof(data);
  data.dwUIChoice = WTD_UI_NONE;
  data.fdwRevocationChecks = WTD_REVOKE_NONE;
  data.dwUnionChoice = WTD_CHOICE_CATALOG;
  data.pCatalog = &member;
  data.dwStateAction = WTD_STATEACTION_VERIFY;
}

}  // namespace

std::int32_t ZQAuthenticodeHelper::GetSecurityCatalogInfo(const wchar_t* file,
                                                          VerificationData& data) {
  LogManager::GetLogger()->LogInfo(L"Security - GetSecurityCatalogInfo - File = %s", file);

  auto member = std::make_unique<CatalogMember>();
  if (!AcquireContext(member->admin)) {
    const DWORD error = GetLastError();
    LogManager::GetLogger()->LogError(
        L"Security - GetSecurityCatalogInfo - Failed during CryptCATAdminAcquireContext2. "
        L"Error Code = %d",
        static_cast<int>(error));
    return 0;
  }

  FileHash hash = CalculateFileHash(file, member->admin.get());
  if (hash.hexText.empty()) return 0;
  if (!FindCatalog(*member, hash)) return 0;

  member->memberTag = std::move(hash.hexText);
  PointAtMember(data, file, *member);
  static_cast<void>(member.release());  // handed over in data.pCatalog
  return 1;
}

FileHash ZQAuthenticodeHelper::CalculateFileHash(const wchar_t* file, void* catalogAdministrator) {
  FileHash hash;
  UniqueCatalogAdmin own;
  if (catalogAdministrator == nullptr) {
    if (!AcquireContext(own)) return hash;
    catalogAdministrator = own.get();
  }

  if (!HashInto(hash.bytes, file, catalogAdministrator)) {
    // Kept on purpose: in this case a context of our own is not released (test
    // CalculateFileHash.DoesNotReleaseItsOwnContextAfterAFailure).
    static_cast<void>(own.release());
    return hash;
  }
  hash.hexText = ToUpperHexText(hash.bytes);
  return hash;
}

}  // namespace Zq::Gantry::Security
