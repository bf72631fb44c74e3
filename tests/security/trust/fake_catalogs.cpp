#include "security/trust/fake_catalogs.h"

#include <wincrypt.h>
#include <wintrust.h>

#include <mscat.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "import_patch.h"

namespace TestSupport {

namespace {

FakeCatalogs* currentCatalogs = nullptr;

struct Context {
  bool isOpen = true;
};

struct Catalog {
  HANDLE context;
  bool isOpen = true;
};

// Kept after their release, so that no handle value is used twice.
std::vector<std::unique_ptr<Context>> contexts;
std::vector<std::unique_ptr<Catalog>> openedCatalogs;

void Note(const char* call) {
  currentCatalogs->calls.push_back(call);
  if (currentCatalogs->record != nullptr) currentCatalogs->record->Add(call);
}

HANDLE NewContext() {
  contexts.push_back(std::make_unique<Context>());
  ++currentCatalogs->openContexts;
  return contexts.back().get();
}

// The object of a handle that is open; fails the test if there is none.
template <typename Object>
Object* FindOpen(const std::vector<std::unique_ptr<Object>>& objects, HANDLE handle) {
  for (const auto& object : objects) {
    if (object.get() == handle && object->isOpen) return object.get();
  }
  ADD_FAILURE() << currentCatalogs->calls.back() << " with a handle that is not open";
  return nullptr;
}

BOOL WINAPI FakeAcquire(HCATADMIN* admin, const GUID* subsystem, PCWSTR algorithm,
                        PCCERT_STRONG_SIGN_PARA policy, DWORD flags) {
  Note("acquire");
  EXPECT_EQ(subsystem, nullptr);
  EXPECT_STREQ(algorithm, L"SHA256");
  EXPECT_EQ(policy, nullptr);
  EXPECT_EQ(flags, 0u);
  if (currentCatalogs->failAcquire) {
    static Context neverOpened{false};
    if (currentCatalogs->leaveHandleOnFailure) *admin = &neverOpened;
    SetLastError(currentCatalogs->acquireError);
    return FALSE;
  }
  *admin = currentCatalogs->acquireNull ? nullptr : NewContext();
  return TRUE;
}

BOOL WINAPI FakeHash(HCATADMIN admin, HANDLE file, DWORD* size, BYTE* bytes, DWORD flags) {
  Note(bytes == nullptr ? "hash size" : "hash");
  FindOpen(contexts, admin);
  DWORD handleFlags = 0;
  EXPECT_TRUE(GetHandleInformation(file, &handleFlags)) << "the file is not open";
  EXPECT_EQ(flags, 0u);
  const auto hashSize = static_cast<DWORD>(currentCatalogs->hash.size());
  if (bytes == nullptr) {
    *size = currentCatalogs->hashSizeZero ? 0 : hashSize;
    return currentCatalogs->failHashSizeCall ? FALSE : TRUE;
  }
  EXPECT_EQ(*size, hashSize);
  if (currentCatalogs->failHash) return FALSE;
  std::copy(currentCatalogs->hash.begin(), currentCatalogs->hash.end(), bytes);
  return TRUE;
}

HCATINFO WINAPI FakeEnum(HCATADMIN admin, BYTE* hash, DWORD size, DWORD flags, HCATINFO* previous) {
  Note("enum");
  FindOpen(contexts, admin);
  EXPECT_EQ(flags, 0u);
  EXPECT_EQ(previous, nullptr);
  currentCatalogs->queriedHash.assign(hash, hash + size);
  if (currentCatalogs->catalogs.empty()) {
    SetLastError(currentCatalogs->enumError);
    return nullptr;
  }
  ++currentCatalogs->openCatalogs;
  openedCatalogs.push_back(std::make_unique<Catalog>(Catalog{admin}));
  return openedCatalogs.back().get();
}

BOOL WINAPI FakeInfo(HCATINFO catalog, CATALOG_INFO* info, DWORD flags) {
  Note("info");
  FindOpen(openedCatalogs, catalog);
  EXPECT_EQ(info->cbStruct, 524u);
  EXPECT_EQ(flags, 0u);
  if (currentCatalogs->failInfo) return FALSE;
  const std::wstring path = currentCatalogs->fillWholePath
                                ? std::wstring(MAX_PATH, L'x')
                                : currentCatalogs->catalogs.front() + L'\0';
  std::copy(path.begin(), path.end(), info->wszCatalogFile);
  return TRUE;
}

BOOL WINAPI FakeReleaseCatalog(HCATADMIN admin, HCATINFO catalog, DWORD flags) {
  Note("release catalog");
  EXPECT_EQ(flags, 0u);
  FindOpen(contexts, admin);
  if (Catalog* open = FindOpen(openedCatalogs, catalog)) {
    EXPECT_EQ(open->context, admin) << "a catalog belongs to the context that returned it";
    open->isOpen = false;
  }
  --currentCatalogs->openCatalogs;
  SetLastError(0);
  return TRUE;
}

BOOL WINAPI FakeReleaseContext(HCATADMIN admin, DWORD flags) {
  Note("release context");
  EXPECT_EQ(flags, 0u);
  if (Context* open = FindOpen(contexts, admin)) open->isOpen = false;
  for (const auto& catalog : openedCatalogs) {
    EXPECT_FALSE(catalog->isOpen && catalog->context == admin) << "a catalog outlives its context";
  }
  --currentCatalogs->openContexts;
  SetLastError(0);
  return TRUE;
}

}  // namespace

struct FakeCatalogs::Patches {
  Standin::ImportPatch acquire{"CryptCATAdminAcquireContext2", &FakeAcquire};
  Standin::ImportPatch hash{"CryptCATAdminCalcHashFromFileHandle2", &FakeHash};
  Standin::ImportPatch enumerate{"CryptCATAdminEnumCatalogFromHash", &FakeEnum};
  Standin::ImportPatch info{"CryptCATCatalogInfoFromContext", &FakeInfo};
  Standin::ImportPatch releaseCatalog{"CryptCATAdminReleaseCatalogContext", &FakeReleaseCatalog};
  Standin::ImportPatch releaseContext{"CryptCATAdminReleaseContext", &FakeReleaseContext};
};

FakeCatalogs::FakeCatalogs() : patches_(std::make_unique<Patches>()) {
  for (int i = 0; i < 32; ++i) hash.push_back(static_cast<std::uint8_t>(i * 7));
  currentCatalogs = this;
}

FakeCatalogs::~FakeCatalogs() {
  EXPECT_EQ(openCatalogs, 0);
  currentCatalogs = nullptr;
}

bool FakeCatalogs::IsOpenContext(HANDLE context) {
  return std::any_of(contexts.begin(), contexts.end(),
                     [context](const auto& one) { return one.get() == context && one->isOpen; });
}

int FakeCatalogs::Count(const std::string& call) const {
  return static_cast<int>(std::count(calls.begin(), calls.end(), call));
}

}  // namespace TestSupport
