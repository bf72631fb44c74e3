#include "automation_ledger.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

using TestSupport::AutomationLedger;

// The watch itself: each fault of a program under test must fail that test.
namespace {

void FreeATextTwice() {
  const AutomationLedger ledger;
  const BSTR text = SysAllocString(L"text");
  SysFreeString(text);
  SysFreeString(text);
}

void FreeATextThatItsVariantFreed() {
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

void FreeATextThatItsArrayFreed() {
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

void LoseAText() {
  const AutomationLedger ledger;
  static_cast<void>(SysAllocString(L"text"));
}

void LoseAnArray() {
  const AutomationLedger ledger;
  static_cast<void>(SafeArrayCreateVector(VT_UI1, 0, 4));
}

}  // namespace

TEST(AutomationLedgerWatch, FailsForATextThatIsFreedTwice) {
  EXPECT_NONFATAL_FAILURE(FreeATextTwice(), "SysFreeString of a block that was freed before");
  EXPECT_NONFATAL_FAILURE(FreeATextThatItsVariantFreed(), "SysFreeString of a block that was");
  EXPECT_NONFATAL_FAILURE(FreeATextThatItsArrayFreed(), "SysFreeString of a block that was");
}

TEST(AutomationLedgerWatch, FailsForAnArrayThatIsDestroyedTwice) {
  EXPECT_NONFATAL_FAILURE(DestroyAnArrayThatItsVariantDestroyed(), "SafeArrayDestroy of a block");
}

TEST(AutomationLedgerWatch, FailsForAnArrayThatIsUsedAfterItsEnd) {
  EXPECT_NONFATAL_FAILURE(ReadAnArrayThatWasDestroyed(), "SafeArrayGetElement of a block");
}

TEST(AutomationLedgerWatch, FailsForAnArrayThatIsDestroyedWhileItsDataAreLocked) {
  EXPECT_NONFATAL_FAILURE(DestroyAnArrayThatIsLocked(), "SafeArrayDestroy of an array whose data");
}

TEST(AutomationLedgerWatch, FailsForABlockThatIsNeverFreed) {
  EXPECT_NONFATAL_FAILURE(LoseAText(), "never freed: a text");
  EXPECT_NONFATAL_FAILURE(LoseAnArray(), "never freed: an array");
}

TEST(AutomationLedgerWatch, OverwritesATextThatIsFreed) {
  const AutomationLedger ledger;
  const BSTR text = SysAllocString(L"text");
  SysFreeString(text);
  EXPECT_EQ(text[0], L'\xDDDD');
}
