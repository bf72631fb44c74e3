#include "platform/win32/owners.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>
#include <utility>
#include <vector>

#include "import_patch.h"
#include "platform/win32/catalog_owners.h"
#include "platform/win32/com_owners.h"
#include "platform/win32/gdiplus_owners.h"
#include "platform/winrt/runtime_text.h"

using namespace Zq::Gantry::Platform;
using Standin::ImportPatch;

// Every policy passes the same tests. Fake release calls record the releases of values that are not
// resources, and change the last error as a real call may do.
namespace {

constexpr DWORD kErrorBefore = 1234;
constexpr std::uintptr_t kFirstValue = 0x7FF1'0000;
constexpr std::uintptr_t kLastValue = 0x7FF4'0000;

std::vector<std::uintptr_t> releases;

/// Records the release of a value of the test. False for any other value.
bool RecordRelease(const void* value) {
  const auto number = reinterpret_cast<std::uintptr_t>(value);
  if (number < kFirstValue || number > kLastValue) return false;
  releases.push_back(number);
  SetLastError(ERROR_INVALID_HANDLE);
  return true;
}

/// One release call of the system, faked for the test's own values.
template <typename Result, typename Value, typename Tag>
class FakeRelease {
 public:
  explicit FakeRelease(const char* name) : patch_(name, &Fake) { current_ = this; }

 private:
  static Result WINAPI Fake(Value value) {
    if (RecordRelease(reinterpret_cast<const void*>(value))) return Result();
    return current_->patch_.template Original<Result WINAPI(Value)>()(value);
  }

  static inline FakeRelease* current_ = nullptr;
  const ImportPatch patch_;
};

void(__cdecl* realFree)(void*) = nullptr;
void __cdecl FakeFree(void* block) {
  if (!RecordRelease(block)) realFree(block);
}

void WINAPI FakeFreeText(BSTR text) { RecordRelease(text); }

Gdiplus::GpStatus WINAPI FakeDisposeImage(Gdiplus::GpImage* image) {
  RecordRelease(image);
  return Gdiplus::Ok;
}

BOOL WINAPI FakeReleaseContext(HCATADMIN admin, DWORD flags) {
  EXPECT_EQ(flags, 0U);
  return RecordRelease(admin);
}

const HCATADMIN kAdmin = reinterpret_cast<HCATADMIN>(std::uintptr_t{0xAD});

BOOL WINAPI FakeReleaseCatalog(HCATADMIN admin, HCATINFO catalog, DWORD flags) {
  EXPECT_EQ(admin, kAdmin);
  EXPECT_EQ(flags, 0U);
  return RecordRelease(catalog);
}

/// Imitates an interface: `value` is recorded when an owner releases the object.
struct FakeInterface {
  std::uintptr_t value;
  void Release() { RecordRelease(reinterpret_cast<const void*>(value)); }
};
FakeInterface objects[] = {{kFirstValue}, {kFirstValue + 0x1'0000}};

/// The number that is recorded for the release of the n-th value.
constexpr std::uintptr_t Number(int n) {
  return kFirstValue + static_cast<std::uintptr_t>(n) * 0x1'0000;
}
// Volatile, so that the compiler does not see which value is passed to free.
volatile std::uintptr_t firstValue = kFirstValue;

template <typename Policy>
typename Policy::Type Value(int n) {
  if constexpr (std::is_same_v<Policy, CatalogPolicy>) {
    return {kAdmin, reinterpret_cast<HCATINFO>(Number(n))};
  } else if constexpr (std::is_same_v<Policy, InterfacePolicy<FakeInterface>>) {
    return &objects[n];
  } else {
    return reinterpret_cast<typename Policy::Type>(firstValue + Number(n) - kFirstValue);
  }
}

template <typename Policy>
class Owners : public testing::Test {
 protected:
  using Owner = UniqueResource<Policy>;

  Owners() {
    realFree = free_.Original<void __cdecl(void*)>();
    releases.clear();
    releases.reserve(100);
    SetLastError(kErrorBefore);
  }

  static void ExpectReleased(std::vector<std::uintptr_t> expected) {
    const DWORD error = GetLastError();
    EXPECT_EQ(releases, expected);
    EXPECT_EQ(error, kErrorBefore) << "a release keeps the last error";
  }

 private:
  const FakeRelease<BOOL, HANDLE, struct CloseTag> closeHandle_{"CloseHandle"};
  const FakeRelease<BOOL, HANDLE, struct FindTag> findClose_{"FindClose"};
  const FakeRelease<BOOL, HMODULE, struct ModuleTag> freeLibrary_{"FreeLibrary"};
  const FakeRelease<HLOCAL, HLOCAL, struct LocalTag> localFree_{"LocalFree"};
  const FakeRelease<HRESULT, SAFEARRAY*, struct ArrayTag> destroyArray_{"SafeArrayDestroy"};
  const FakeRelease<LSTATUS, HKEY, struct KeyTag> closeKey_{"RegCloseKey"};
  const FakeRelease<BOOL, HICON, struct IconTag> destroyIcon_{"DestroyIcon"};
  const FakeRelease<HRESULT, HSTRING__*, struct TextTag> deleteText_{"WindowsDeleteString"};
  const ImportPatch disposeImage_{"GdipDisposeImage", &FakeDisposeImage};
  const ImportPatch free_{"free", &FakeFree};
  const ImportPatch freeText_{"SysFreeString", &FakeFreeText};
  const ImportPatch releaseContext_{"CryptCATAdminReleaseContext", &FakeReleaseContext};
  const ImportPatch releaseCatalog_{"CryptCATAdminReleaseCatalogContext", &FakeReleaseCatalog};
};

using AllPolicies =
    testing::Types<HandlePolicy, FileHandlePolicy, FindHandlePolicy, ModulePolicy, LocalBlockPolicy,
                   HeapBlockPolicy, BstrPolicy, SafeArrayPolicy, InterfacePolicy<FakeInterface>,
                   CatalogAdminPolicy, CatalogPolicy, RegKeyPolicy, IconPolicy, GdiplusImagePolicy,
                   WinRt::HStringPolicy>;
TYPED_TEST_SUITE(Owners, AllPolicies);

}  // namespace

TEST(OwnerPolicies, FilesAndSearchesAreEmptyAtTheInvalidHandleAndAllElseAtNull) {
  EXPECT_EQ(FileHandlePolicy::Empty(), INVALID_HANDLE_VALUE);
  EXPECT_EQ(FindHandlePolicy::Empty(), INVALID_HANDLE_VALUE);
  EXPECT_EQ(HandlePolicy::Empty(), nullptr);
  EXPECT_EQ(ModulePolicy::Empty(), nullptr);
  EXPECT_EQ(LocalBlockPolicy::Empty(), nullptr);
  EXPECT_EQ(HeapBlockPolicy::Empty(), nullptr);
  EXPECT_EQ(BstrPolicy::Empty(), nullptr);
  EXPECT_EQ(SafeArrayPolicy::Empty(), nullptr);
  EXPECT_EQ(CatalogAdminPolicy::Empty(), nullptr);
  EXPECT_EQ(CatalogPolicy::Empty().catalog, nullptr);
  EXPECT_EQ(RegKeyPolicy::Empty(), nullptr);
  EXPECT_EQ(IconPolicy::Empty(), nullptr);
  EXPECT_EQ(GdiplusImagePolicy::Empty(), nullptr);
  EXPECT_EQ(WinRt::HStringPolicy::Empty(), nullptr);
}

TYPED_TEST(Owners, ReleaseOnceAtTheEnd) {
  {
    const typename TestFixture::Owner owner(Value<TypeParam>(0));
    EXPECT_TRUE(static_cast<bool>(owner));
    EXPECT_TRUE(releases.empty());
  }
  this->ExpectReleased({Number(0)});
}

TYPED_TEST(Owners, ReleaseNothingWhenEmpty) {
  {
    typename TestFixture::Owner owner;
    EXPECT_FALSE(static_cast<bool>(owner));
    EXPECT_EQ(owner.get(), TypeParam::Empty());
    owner.reset();
  }
  this->ExpectReleased({});
}

TYPED_TEST(Owners, ReleaseOnceAfterMoves) {
  {
    typename TestFixture::Owner first(Value<TypeParam>(0));
    typename TestFixture::Owner second(std::move(first));
    typename TestFixture::Owner third;
    third = std::move(second);
    EXPECT_EQ(third.get(), Value<TypeParam>(0));
    EXPECT_TRUE(releases.empty());
  }
  this->ExpectReleased({Number(0)});
}

TYPED_TEST(Owners, ReleaseWhatTheyHeldAtAMoveAssignment) {
  typename TestFixture::Owner target(Value<TypeParam>(0));
  typename TestFixture::Owner source(Value<TypeParam>(1));
  target = std::move(source);
  this->ExpectReleased({Number(0)});
  target.reset();
  this->ExpectReleased({Number(0), Number(1)});
}

TYPED_TEST(Owners, ReleaseWhatTheyHeldAtAReset) {
  typename TestFixture::Owner owner(Value<TypeParam>(0));
  owner.reset(Value<TypeParam>(1));
  this->ExpectReleased({Number(0)});
  owner.reset();
  owner.reset();
  this->ExpectReleased({Number(0), Number(1)});
}

TYPED_TEST(Owners, HandOutAnEmptyPlaceOnly) {
  typename TestFixture::Owner owner(Value<TypeParam>(0));
  auto* place = owner.out();
  this->ExpectReleased({Number(0)});
  EXPECT_EQ(*place, TypeParam::Empty());
  *place = Value<TypeParam>(1);
  owner.reset();
  this->ExpectReleased({Number(0), Number(1)});
}

TYPED_TEST(Owners, GiveUpWithoutReleasing) {
  {
    typename TestFixture::Owner owner(Value<TypeParam>(0));
    EXPECT_EQ(owner.release(), Value<TypeParam>(0));
    EXPECT_FALSE(static_cast<bool>(owner));
  }
  this->ExpectReleased({});
}
