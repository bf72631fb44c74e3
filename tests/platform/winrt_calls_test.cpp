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

using TestSupport::RuntimeTextLedger;
using namespace Zq::Gantry::Platform;
using namespace Zq::Gantry::Platform::WinRt;
using namespace std::string_literals;

namespace {

int deletions = 0;
HRESULT(WINAPI* realDelete)(HSTRING) = nullptr;

HRESULT WINAPI CountDeletion(HSTRING text) {
  ++deletions;
  SetLastError(ERROR_INVALID_DATA);
  return realDelete(text);
}

HRESULT WINAPI NoString(const wchar_t*, UINT32, HSTRING*) { return E_OUTOFMEMORY; }

HRESULT WINAPI NoObject(HSTRING, IInspectable** object) {
  *object = nullptr;
  return S_OK;
}

/// The result of the CallFailure that `call` throws; S_OK if it throws none.
template <typename Call>
HRESULT ThrownBy(Call call) {
  try {
    call();
    return S_OK;
  } catch (const CallFailure& failure) {
    return failure.Result();
  }
}

}  // namespace

TEST(MakeHString, RoundTripsEmbeddedNulls) {
  const RuntimeTextLedger strings;
  EXPECT_EQ(TextOf(MakeHString(L"a\0\u0142"s).get()), L"a\0\u0142"s);
}

TEST(MakeHString, RepresentsAnEmptyStringByNull) {
  const RuntimeTextLedger strings;
  EXPECT_EQ(TextOf(nullptr), L"");
  EXPECT_EQ(MakeHString(L"").get(), nullptr);
}

TEST(UniqueHString, DeletesOnceAndKeepsTheLastError) {
  const RuntimeTextLedger strings;
  const Standin::ImportPatch patch("WindowsDeleteString", &CountDeletion);
  realDelete = patch.Original<HRESULT WINAPI(HSTRING)>();
  deletions = 0;
  SetLastError(ERROR_FILE_NOT_FOUND);
  {
    UniqueHString first = MakeHString(L"text");
    UniqueHString second(std::move(first));
    second.reset();
  }
  EXPECT_EQ(GetLastError(), DWORD{ERROR_FILE_NOT_FOUND});
  EXPECT_EQ(deletions, 1);
}

TEST(MakeHString, ThrowsWhenTheStringCannotBeCreated) {
  const RuntimeTextLedger strings;
  const Standin::ImportPatch patch("WindowsCreateString", &NoString);
  EXPECT_EQ(ThrownBy([] { static_cast<void>(MakeHString(L"text")); }), E_OUTOFMEMORY);
}

TEST(ActivateInstance, ThrowsForAnUnregisteredClass) {
  const ApartmentMembership apartment;
  EXPECT_EQ(ThrownBy([] { static_cast<void>(ActivateInstance(L"Wattleaf.Tests.NoSuchClass")); }),
            REGDB_E_CLASSNOTREG);
}

TEST(ActivateInstance, ThrowsForASuccessWithoutAnObject) {
  const Standin::ImportPatch patch("RoActivateInstance", &NoObject);
  EXPECT_EQ(ThrownBy([] { static_cast<void>(ActivateInstance(L"Some.Class")); }), E_POINTER);
}

TEST(ThrowIfFailed, ThrowsOnFailuresOnly) {
  EXPECT_EQ(ThrownBy([] { ThrowIfFailed(S_FALSE); }), S_OK);
  EXPECT_EQ(ThrownBy([] { ThrowIfFailed(E_ACCESSDENIED); }), E_ACCESSDENIED);
}
