#include "security/access/rpc_security_helper.h"

// A host includes the installed header without Windows' own.
#if defined(_WINDOWS_) || defined(_INC_WINDOWS)
#error "the header includes Windows' headers"
#endif

#include <windows.h>

#include <gmock/gmock.h>
#include <winstring.h>

#include <cstddef>
#include <type_traits>

#include "fake_caller.h"
#include "support/import_watch.h"

// The object itself: its fields, its constants and its destruction.
namespace Zq::Gantry::Security {
namespace {

using Platform::WinRt::UniqueHString;
using Standin::ImportPatch;
using testing::ElementsAre;
using testing::IsEmpty;

template <typename Field, typename Type>
constexpr bool kIs = std::is_same_v<std::remove_const_t<Field>, Type>;

static_assert(kIs<decltype(RpcSecurityHelper::PublisherId), const wchar_t*>);
static_assert(kIs<decltype(RpcSecurityHelper::ManifestName), std::wstring>);
static_assert(kIs<decltype(RpcSecurityHelper::ManifestExtension), std::wstring>);
static_assert(kIs<decltype(RpcSecurityHelper::CatalogExtension), std::wstring>);
static_assert(kIs<decltype(RpcSecurityHelper::SignatureExtension), std::wstring>);
static_assert(kIs<decltype(RpcSecurityHelper::ZqSignatureExtension), std::wstring>);
static_assert(kIs<decltype(RpcSecurityHelper::CapabilityCatalogX64), std::wstring>);
static_assert(kIs<decltype(RpcSecurityHelper::CapabilityCatalogX86), std::wstring>);
static_assert(std::is_same_v<UniqueHString::Type, HSTRING>);
static_assert(sizeof(UniqueHString) == sizeof(HSTRING));
static_assert(kIs<decltype(RpcSecurityHelper::ExtraPlatformText), UniqueHString>);
static_assert(
    kIs<decltype(RpcSecurityHelper::ClientProcessHandles), std::map<std::uint32_t, HANDLE>>);
static_assert(kIs<decltype(RpcSecurityHelper::SharedPartOne), std::shared_ptr<void>>);
static_assert(kIs<decltype(RpcSecurityHelper::SharedPartTwo), std::shared_ptr<void>>);
static_assert(kIs<decltype(RpcSecurityHelper::ExtraText), std::wstring>);

// Each field begins where the previous one ends, the first at the beginning of the object.
constexpr std::size_t kText = sizeof(std::wstring);
constexpr std::size_t kFirstText = sizeof(const wchar_t*);
constexpr std::size_t kPlatformText = kFirstText + 7 * kText;
constexpr std::size_t kHandles = kPlatformText + sizeof(HSTRING);
constexpr std::size_t kShared = kHandles + sizeof(std::map<std::uint32_t, HANDLE>);
constexpr std::size_t kLastText = kShared + 2 * sizeof(std::shared_ptr<void>);

TEST(RpcSecurityHelper, HasItsFieldsInTheOrderOfTheContract) {
  EXPECT_EQ(offsetof(RpcSecurityHelper, PublisherId), 0U);
  EXPECT_EQ(offsetof(RpcSecurityHelper, ManifestName), kFirstText);
  EXPECT_EQ(offsetof(RpcSecurityHelper, ManifestExtension), kFirstText + kText);
  EXPECT_EQ(offsetof(RpcSecurityHelper, CatalogExtension), kFirstText + 2 * kText);
  EXPECT_EQ(offsetof(RpcSecurityHelper, SignatureExtension), kFirstText + 3 * kText);
  EXPECT_EQ(offsetof(RpcSecurityHelper, ZqSignatureExtension), kFirstText + 4 * kText);
  EXPECT_EQ(offsetof(RpcSecurityHelper, CapabilityCatalogX64), kFirstText + 5 * kText);
  EXPECT_EQ(offsetof(RpcSecurityHelper, CapabilityCatalogX86), kFirstText + 6 * kText);
  EXPECT_EQ(offsetof(RpcSecurityHelper, ExtraPlatformText), kPlatformText);
  EXPECT_EQ(offsetof(RpcSecurityHelper, ClientProcessHandles), kHandles);
  EXPECT_EQ(offsetof(RpcSecurityHelper, SharedPartOne), kShared);
  EXPECT_EQ(offsetof(RpcSecurityHelper, SharedPartTwo), kShared + sizeof(std::shared_ptr<void>));
  EXPECT_EQ(offsetof(RpcSecurityHelper, ExtraText), kLastText);
  EXPECT_EQ(sizeof(RpcSecurityHelper), kLastText + kText);
}

TEST(RpcSecurityHelper, HoldsTheConstantsOfTheManifestCheck) {
  const RpcSecurityHelper helper;
  EXPECT_STREQ(helper.PublisherId, L"q7m3xk2tdw9pa");
  EXPECT_EQ(helper.ManifestName, L"ZQManifest");
  EXPECT_EQ(helper.ManifestExtension, L".xml");
  EXPECT_EQ(helper.CatalogExtension, L".cat");
  EXPECT_EQ(helper.SignatureExtension, L".p7s");
  EXPECT_EQ(helper.ZqSignatureExtension, L".zqc");
  EXPECT_EQ(helper.CapabilityCatalogX64, L"zqcustomcapcompx64.cat");
  EXPECT_EQ(helper.CapabilityCatalogX86, L"zqcustomcapcompx86.cat");
}

TEST(RpcSecurityHelper, IsEmptyApartFromItsConstants) {
  const RpcSecurityHelper helper;
  EXPECT_EQ(helper.ExtraPlatformText.get(), nullptr);
  EXPECT_THAT(helper.ClientProcessHandles, IsEmpty());
  EXPECT_EQ(helper.SharedPartOne, nullptr);
  EXPECT_EQ(helper.SharedPartTwo, nullptr);
  EXPECT_EQ(helper.ExtraText, L"");
}

TEST(RpcSecurityHelper, ConstantsCannotBeChangedFromOutside) {
  static_assert(std::is_const_v<decltype(RpcSecurityHelper::PublisherId)>);
  static_assert(std::is_const_v<decltype(RpcSecurityHelper::ManifestName)>);
  static_assert(std::is_const_v<decltype(RpcSecurityHelper::CapabilityCatalogX86)>);
  static_assert(!std::is_copy_constructible_v<RpcSecurityHelper>);
  static_assert(!std::is_copy_assignable_v<RpcSecurityHelper>);
}

TEST(RpcSecurityHelper, MakesNoSystemCallInItsConstructorAndDestructor) {
  const TestSupport::ImportWatch watch;
  { const RpcSecurityHelper helper; }
  EXPECT_THAT(watch.Calls(), IsEmpty());
}

TEST(RpcSecurityHelper, ClosesNoHandleThatTheHostHolds) {
  const TestSupport::FakeCaller fake;
  {
    RpcSecurityHelper helper;
    helper.ClientProcessHandles[4321] = TestSupport::FakeCaller::Handle(0x7777);
  }
  EXPECT_THAT(fake.closed, IsEmpty());
}

std::vector<std::string> released;

TEST(RpcSecurityHelper, ReleasesItsPartsInReverseOrder) {
  released.clear();
  const ImportPatch remove(
      "WindowsDeleteString", +[](HSTRING text) -> HRESULT {
        released.push_back(text == reinterpret_cast<HSTRING>(0x5555) ? "text" : "another text");
        return S_OK;
      });
  {
    int part = 0;
    RpcSecurityHelper helper;
    helper.ExtraPlatformText.reset(reinterpret_cast<HSTRING>(0x5555));
    helper.SharedPartOne.reset(&part, [](void*) { released.push_back("one"); });
    helper.SharedPartTwo.reset(&part, [](void*) { released.push_back("two"); });
  }
  EXPECT_THAT(released, ElementsAre("two", "one", "text"));
}

}  // namespace
}  // namespace Zq::Gantry::Security
