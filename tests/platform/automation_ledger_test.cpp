#include "platform/automation_ledger.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

using TestSupport::AutomationLedger;

// Each of these functions makes one mistake that the ledger must report as a failure.
namespace {

void FreeAStringTwice() {
  const AutomationLedger ledger;
  const BSTR text = SysAllocString(L"text");
  SysFreeString(text);
  SysFreeString(text);
}

void FreeAStringThatItsVariantFreed() {
  const AutomationLedger ledger;
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_BSTR;
  value.bstrVal = SysAllocString(L"text");
  const BSTR text = value.bstrVal;
  VariantClear(&value);
  SysFreeString(text);
}

void DestroyAnArrayThatItsVariantDestroyed() {
  const AutomationLedger ledger;
  VARIANT value;
  VariantInit(&value);
  value.vt = VT_ARRAY | VT_UI1;
  value.parray = SafeArrayCreateVector(VT_UI1, 0, 4);
  SAFEARRAY* const array = value.parray;
  VariantClear(&value);
  SafeArrayDestroy(array);
}

void FreeAStringThatItsArrayFreed() {
  const AutomationLedger ledger;
  SAFEARRAY* const array = SafeArrayCreateVector(VT_BSTR, 0, 1);
  auto* const texts = static_cast<BSTR*>(array->pvData);
  texts[0] = SysAllocString(L"text");
  const BSTR text = texts[0];
  SafeArrayDestroy(array);
  SysFreeString(text);
}

void ReadAnArrayThatWasDestroyed() {
  const AutomationLedger ledger;
  SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, 4);
  SafeArrayDestroy(array);
  LONG index = 0;
  unsigned char byte = 0;
  static_cast<void>(SafeArrayGetElement(array, &index, &byte));
}

void DestroyAnArrayThatIsLocked() {
  const AutomationLedger ledger;
  SAFEARRAY* const array = SafeArrayCreateVector(VT_UI1, 0, 4);
  void* data = nullptr;
  static_cast<void>(SafeArrayAccessData(array, &data));
  SafeArrayDestroy(array);
}

void LeakAString() {
  const AutomationLedger ledger;
  static_cast<void>(SysAllocString(L"text"));
}

void LeakAnArray() {
  const AutomationLedger ledger;
  static_cast<void>(SafeArrayCreateVector(VT_UI1, 0, 4));
}

}  // namespace

TEST(AutomationLedger, FailsTheTestWhenAStringIsFreedTwice) {
  EXPECT_NONFATAL_FAILURE(FreeAStringTwice(), "SysFreeString of a block that was freed before");
  EXPECT_NONFATAL_FAILURE(FreeAStringThatItsVariantFreed(), "SysFreeString of a block that was");
  EXPECT_NONFATAL_FAILURE(FreeAStringThatItsArrayFreed(), "SysFreeString of a block that was");
}

TEST(AutomationLedger, FailsTheTestWhenAnArrayIsDestroyedTwice) {
  EXPECT_NONFATAL_FAILURE(DestroyAnArrayThatItsVariantDestroyed(), "SafeArrayDestroy of a block");
}

TEST(AutomationLedger, FailsTheTestWhenADestroyedArrayIsUsed) {
  EXPECT_NONFATAL_FAILURE(ReadAnArrayThatWasDestroyed(), "SafeArrayGetElement of a block");
}

TEST(AutomationLedger, FailsTheTestWhenALockedArrayIsDestroyed) {
  EXPECT_NONFATAL_FAILURE(DestroyAnArrayThatIsLocked(), "SafeArrayDestroy of a locked array");
}

TEST(AutomationLedger, FailsTheTestWhenABlockIsNeverFreed) {
  EXPECT_NONFATAL_FAILURE(LeakAString(), "never freed: a string");
  EXPECT_NONFATAL_FAILURE(LeakAnArray(), "never freed: an array");
}

TEST(AutomationLedger, OverwritesAFreedString) {
  const AutomationLedger ledger;
  const BSTR text = SysAllocString(L"text");
  SysFreeString(text);
  EXPECT_EQ(text[0], L'\xDDDD');
}
