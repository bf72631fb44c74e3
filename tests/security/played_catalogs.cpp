#include "played_catalogs.h"

#include <wincrypt.h>
#include <wintrust.h>

#include <mscat.h>

#include <gtest/gtest.h>

#include <algorithm>

#include "import_patch.h"

namespace TestSupport {

namespace {

PlayedCatalogs* current = nullptr;
int contextObject = 0;
int catalogObject = 0;

HANDLE TheContext() { return &contextObject; }
HANDLE TheCatalog() { return &catalogObject; }

BOOL WINAPI PlayedAcquire(HCATADMIN* admin, const GUID* subsystem, PCWSTR algorithm,
                          PCCERT_STRONG_SIGN_PARA policy, DWORD flags) {
  current->calls.push_back("acquire");
  EXPECT_EQ(subsystem, nullptr);
  EXPECT_STREQ(algorithm, L"SHA256");
  EXPECT_EQ(policy, nullptr);
  EXPECT_EQ(flags, 0u);
  if (current->failAcquire) {
    if (current->leaveHandleOnFailure) *admin = TheContext();
    SetLastError(current->acquireError);
    return FALSE;
  }
  *admin = current->acquireNull ? nullptr : TheContext();
  if (*admin != nullptr) ++current->openContexts;
  return TRUE;
}

BOOL WINAPI PlayedHash(HCATADMIN admin, HANDLE file, DWORD* size, BYTE* bytes, DWORD flags) {
  current->calls.push_back(bytes == nullptr ? "hash size" : "hash");
  EXPECT_EQ(admin, TheContext());
  EXPECT_NE(file, INVALID_HANDLE_VALUE);
  EXPECT_EQ(flags, 0u);
  const auto hashSize = static_cast<DWORD>(current->hash.size());
  if (bytes == nullptr) {
    *size = current->hashSizeZero ? 0 : hashSize;
    return current->failHashSizeCall ? FALSE : TRUE;
  }
  EXPECT_EQ(*size, hashSize);
  if (current->failHash) return FALSE;
  std::copy(current->hash.begin(), current->hash.end(), bytes);
  return TRUE;
}

HCATINFO WINAPI PlayedEnum(HCATADMIN admin, BYTE* hash, DWORD size, DWORD flags,
                           HCATINFO* previous) {
  current->calls.push_back("enum");
  EXPECT_EQ(admin, TheContext());
  EXPECT_EQ(flags, 0u);
  EXPECT_EQ(previous, nullptr);
  current->askedHash.assign(hash, hash + size);
  if (current->catalogs.empty()) {
    SetLastError(current->enumError);
    return nullptr;
  }
  ++current->openCatalogs;
  return TheCatalog();
}

BOOL WINAPI PlayedInfo(HCATINFO catalog, CATALOG_INFO* info, DWORD flags) {
  current->calls.push_back("info");
  EXPECT_EQ(catalog, TheCatalog());
  EXPECT_EQ(info->cbStruct, 524u);
  EXPECT_EQ(flags, 0u);
  if (current->failInfo) return FALSE;
  const std::wstring path =
      current->fillWholePath ? std::wstring(MAX_PATH, L'x') : current->catalogs.front() + L'\0';
  std::copy(path.begin(), path.end(), info->wszCatalogFile);
  return TRUE;
}

BOOL WINAPI PlayedReleaseCatalog(HCATADMIN admin, HCATINFO catalog, DWORD flags) {
  current->calls.push_back("release catalog");
  EXPECT_EQ(admin, TheContext());
  EXPECT_EQ(catalog, TheCatalog());
  EXPECT_EQ(flags, 0u);
  EXPECT_GT(current->openContexts, 0) << "the context must outlive the catalog";
  --current->openCatalogs;
  SetLastError(0);
  return TRUE;
}

BOOL WINAPI PlayedReleaseContext(HCATADMIN admin, DWORD flags) {
  current->calls.push_back("release context");
  EXPECT_EQ(admin, TheContext());
  EXPECT_EQ(flags, 0u);
  --current->openContexts;
  SetLastError(0);
  return TRUE;
}

}  // namespace

struct PlayedCatalogs::Patches {
  Standin::ImportPatch acquire{"CryptCATAdminAcquireContext2", &PlayedAcquire};
  Standin::ImportPatch hash{"CryptCATAdminCalcHashFromFileHandle2", &PlayedHash};
  Standin::ImportPatch enumerate{"CryptCATAdminEnumCatalogFromHash", &PlayedEnum};
  Standin::ImportPatch info{"CryptCATCatalogInfoFromContext", &PlayedInfo};
  Standin::ImportPatch releaseCatalog{"CryptCATAdminReleaseCatalogContext", &PlayedReleaseCatalog};
  Standin::ImportPatch releaseContext{"CryptCATAdminReleaseContext", &PlayedReleaseContext};
};

PlayedCatalogs::PlayedCatalogs() : patches_(std::make_unique<Patches>()) {
  for (int i = 0; i < 32; ++i) hash.push_back(static_cast<std::uint8_t>(i * 7));
  current = this;
}

PlayedCatalogs::~PlayedCatalogs() { current = nullptr; }

int PlayedCatalogs::Count(const std::string& call) const {
  return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

}  // namespace TestSupport
