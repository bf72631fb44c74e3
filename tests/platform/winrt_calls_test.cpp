#include <windows.h>

#include <gtest/gtest.h>
#include <roapi.h>
#include <winstring.h>

#include <string>
#include <utility>

#include "import_patch.h"
#include "platform/winrt/activation.h"
#include "platform/winrt/calls.h"
#include "support/runtime_text_ledger.h"

using namespace Zq::Gantry::Platform;
using namespace Zq::Gantry::Platform::WinRt;
using namespace std::string_literals;

namespace {

int deletedTexts = 0;
HRESULT(WINAPI* realDelete)(HSTRING) = nullptr;

HRESULT WINAPI CountDeletion(HSTRING text) {
  ++deletedTexts;
  SetLastError(ERROR_INVALID_DATA);
  return realDelete(text);
}

HRESULT WINAPI NoText(const wchar_t*, UINT32, HSTRING*) { return E_OUTOFMEMORY; }

HRESULT WINAPI NoObject(HSTRING, IInspectable** object) {
  *object = nullptr;
  return S_OK;
}

/// No text outlives a test.
class RuntimeText : public testing::Test {
 private:
  const TestSupport::RuntimeTextLedger texts_;
};

/// What the call raises; S_OK for nothing.
template <typename Call>
HRESULT Raised(Call call) {
  try {
    call();
    return S_OK;
  } catch (const CallFailure& failure) {
    return failure.Result();
  }
}

}  // namespace

TEST_F(RuntimeText, GoesThereAndBackWithEmbeddedZeros) {
  EXPECT_EQ(TextOf(MakeHString(L"a\0\u0142"s).get()), L"a\0\u0142"s);
}

TEST_F(RuntimeText, NullIsTheEmptyText) {
  EXPECT_EQ(TextOf(nullptr), L"");
  EXPECT_EQ(MakeHString(L"").get(), nullptr);
}

TEST_F(RuntimeText, IsDeletedOnceAndKeepsTheLastError) {
  const Standin::ImportPatch patch("WindowsDeleteString", &CountDeletion);
  realDelete = patch.Original<HRESULT WINAPI(HSTRING)>();
  deletedTexts = 0;
  SetLastError(ERROR_FILE_NOT_FOUND);
  {
    UniqueHString first = MakeHString(L"text");
    UniqueHString second(std::move(first));
    second.reset();
  }
  EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(deletedTexts, 1);
}

TEST_F(RuntimeText, ThatCannotBeMadeIsRaised) {
  const Standin::ImportPatch patch("WindowsCreateString", &NoText);
  EXPECT_EQ(Raised([] { static_cast<void>(MakeHString(L"text")); }), E_OUTOFMEMORY);
}

TEST(RuntimeActivation, ClassThatIsNotRegisteredIsRaised) {
  const ApartmentMembership apartment;
  EXPECT_EQ(Raised([] { static_cast<void>(ActivateInstance(L"Wattleaf.Tests.NoSuchClass")); }),
            REGDB_E_CLASSNOTREG);
}

TEST(RuntimeActivation, SuccessWithoutAnObjectIsRaised) {
  const Standin::ImportPatch patch("RoActivateInstance", &NoObject);
  EXPECT_EQ(Raised([] { static_cast<void>(ActivateInstance(L"Some.Class")); }), E_POINTER);
}

TEST(RuntimeFailure, OnlyFailuresAreRaised) {
  EXPECT_EQ(Raised([] { ThrowIfFailed(S_FALSE); }), S_OK);
  EXPECT_EQ(Raised([] { ThrowIfFailed(E_ACCESSDENIED); }), E_ACCESSDENIED);
}
