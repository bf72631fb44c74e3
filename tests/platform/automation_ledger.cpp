#include "automation_ledger.h"

namespace TestSupport {

namespace {

AutomationLedger* current = nullptr;

}  // namespace

AutomationLedger::AutomationLedger()
    : allocText_("SysAllocString", &AutomationLedger::AllocText),
      allocTextLen_("SysAllocStringLen", &AutomationLedger::AllocTextLen),
      freeText_("SysFreeString", &AutomationLedger::FreeText),
      createVector_("SafeArrayCreateVector", &AutomationLedger::CreateVector),
      createArray_("SafeArrayCreate", &AutomationLedger::CreateArray),
      destroyArray_("SafeArrayDestroy", &AutomationLedger::DestroyArray),
      clearVariant_("VariantClear", &AutomationLedger::ClearVariant),
      access_("SafeArrayAccessData", &AutomationLedger::Access),
      unaccess_("SafeArrayUnaccessData", &AutomationLedger::Unaccess),
      putElement_("SafeArrayPutElement", &AutomationLedger::PutElement),
      getElement_("SafeArrayGetElement", &AutomationLedger::GetElement) {
  current = this;
}

AutomationLedger::~AutomationLedger() { current = nullptr; }

template <typename Block>
Block* AutomationLedger::Add(Block* block) {
  if (block != nullptr) blocks_.insert(block);
  return block;
}

/// The texts in an array go with it.
void AutomationLedger::ForgetArray(SAFEARRAY* array) {
  if (array == nullptr || blocks_.erase(array) == 0 || (array->fFeatures & FADF_BSTR) == 0) return;
  auto* texts = static_cast<BSTR*>(array->pvData);
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) blocks_.erase(texts[i]);
}

BSTR WINAPI AutomationLedger::AllocText(const OLECHAR* text) {
  if (!current->refusedText.empty() && text == current->refusedText) return nullptr;
  return current->Add(current->allocText_.Original<decltype(SysAllocString)>()(text));
}

BSTR WINAPI AutomationLedger::AllocTextLen(const OLECHAR* text, UINT length) {
  return current->Add(current->allocTextLen_.Original<decltype(SysAllocStringLen)>()(text, length));
}

void WINAPI AutomationLedger::FreeText(BSTR text) {
  current->blocks_.erase(text);
  current->freeText_.Original<decltype(SysFreeString)>()(text);
}

SAFEARRAY* WINAPI AutomationLedger::CreateVector(VARTYPE type, LONG lowerBound, ULONG count) {
  if (++current->vectors_ == current->refusedVector) return nullptr;
  return current->Add(
      current->createVector_.Original<decltype(SafeArrayCreateVector)>()(type, lowerBound, count));
}

SAFEARRAY* WINAPI AutomationLedger::CreateArray(VARTYPE type, UINT dimensions,
                                                SAFEARRAYBOUND* bounds) {
  return current->Add(
      current->createArray_.Original<decltype(SafeArrayCreate)>()(type, dimensions, bounds));
}

HRESULT WINAPI AutomationLedger::DestroyArray(SAFEARRAY* array) {
  current->ForgetArray(array);
  return current->destroyArray_.Original<decltype(SafeArrayDestroy)>()(array);
}

HRESULT WINAPI AutomationLedger::ClearVariant(VARIANTARG* value) {
  if ((value->vt & VT_ARRAY) != 0) current->ForgetArray(value->parray);
  if (value->vt == VT_BSTR) current->blocks_.erase(value->bstrVal);
  return current->clearVariant_.Original<decltype(VariantClear)>()(value);
}

HRESULT WINAPI AutomationLedger::Access(SAFEARRAY* array, void** data) {
  ++current->accessCalls;
  if (current->accessResult != S_OK) return current->accessResult;
  return current->access_.Original<decltype(SafeArrayAccessData)>()(array, data);
}

HRESULT WINAPI AutomationLedger::Unaccess(SAFEARRAY* array) {
  ++current->unaccessCalls;
  const HRESULT result = current->unaccess_.Original<decltype(SafeArrayUnaccessData)>()(array);
  return current->unaccessResult != S_OK ? current->unaccessResult : result;
}

HRESULT WINAPI AutomationLedger::PutElement(SAFEARRAY* array, LONG* index, void* element) {
  if (current->putElementResult != S_OK) return current->putElementResult;
  return current->putElement_.Original<decltype(SafeArrayPutElement)>()(array, index, element);
}

HRESULT WINAPI AutomationLedger::GetElement(SAFEARRAY* array, LONG* index, void* element) {
  ++current->getElementCalls;
  const bool refused = current->getElementResult != S_OK && *index == current->refusedIndex;
  if (refused) return current->getElementResult;
  const HRESULT result =
      current->getElement_.Original<decltype(SafeArrayGetElement)>()(array, index, element);
  if (SUCCEEDED(result) && (array->fFeatures & FADF_BSTR) != 0) {
    current->Add(*static_cast<BSTR*>(element));
  }
  return result;
}

}  // namespace TestSupport
