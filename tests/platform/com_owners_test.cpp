#include "platform/win32/com_owners.h"

#include <gtest/gtest.h>
#include <unknwn.h>

#include <utility>

#include "live_object.h"
#include "platform/automation_ledger.h"

using namespace Zq::Gantry::Platform;
using TestSupport::AutomationLedger;

namespace {

class Probe final : public Standin::Firmware::LiveObject<IUnknown> {
 public:
  STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
};

int Live() { return Standin::Firmware::LiveObjects(); }

}  // namespace

TEST(UniqueInterface, ReleasesOnceAfterMovesAndResets) {
  {
    UniqueInterface<IUnknown> first(new Probe);
    UniqueInterface<IUnknown> second(std::move(first));
    EXPECT_EQ(Live(), 1);
    second.reset(new Probe);
    EXPECT_EQ(Live(), 1);
    UniqueInterface<IUnknown> third;
    third = std::move(second);
  }
  EXPECT_EQ(Live(), 0);
}

TEST(UniqueInterface, DoesNotReleaseAfterGivingUp) {
  UniqueInterface<IUnknown> owner(new Probe);
  IUnknown* given = owner.release();
  owner.reset();
  EXPECT_EQ(Live(), 1);
  EXPECT_EQ(given->Release(), 0U);
}

TEST(UniqueBstr, FreesItsStringOnce) {
  AutomationLedger ledger;
  {
    const UniqueBstr text = MakeBstr(L"text");
    EXPECT_STREQ(text.get(), L"text");
    EXPECT_EQ(ledger.Outstanding(), 1U);
  }
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

TEST(UniqueSafeArray, DestroysItsArrayOnce) {
  AutomationLedger ledger;
  {
    const UniqueSafeArray array(SafeArrayCreateVector(VT_UI1, 0, 4));
    EXPECT_EQ(ledger.Outstanding(), 1U);
  }
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

TEST(ScopedVariant, TakesOwnershipOfAnArray) {
  AutomationLedger ledger;
  {
    ScopedVariant value;
    value.AdoptArray(VT_UI1, SafeArrayCreateVector(VT_UI1, 0, 4));
    EXPECT_EQ(value->vt, VT_ARRAY | VT_UI1);
  }
  EXPECT_EQ(ledger.Outstanding(), 0U);
}

TEST(ScopedVariant, AddsAReferenceToAnObject) {
  const UniqueInterface<IUnknown> object(new Probe);
  {
    ScopedVariant value;
    value.ShareObject(object.get());
    EXPECT_EQ(value->vt, VT_UNKNOWN);
  }
  EXPECT_EQ(Live(), 1);
}

TEST(ScopedSafeArrayAccess, ClosesOnceExplicitlyOrInTheDestructor) {
  const UniqueSafeArray array(SafeArrayCreateVector(VT_UI1, 0, 4));
  AutomationLedger ledger;
  {
    ScopedSafeArrayAccess access(array.get());
    EXPECT_EQ(access.Result(), S_OK);
    EXPECT_EQ(access.Close(), S_OK);
  }
  { const ScopedSafeArrayAccess access(array.get()); }
  EXPECT_EQ(ledger.accessCalls, 2);
  EXPECT_EQ(ledger.unaccessCalls, 2);
}

TEST(ScopedSafeArrayAccess, DoesNotCloseAfterAFailedOpen) {
  AutomationLedger ledger;
  ledger.accessResult = E_INVALIDARG;
  { const ScopedSafeArrayAccess access(nullptr); }
  EXPECT_EQ(ledger.unaccessCalls, 0);
}
