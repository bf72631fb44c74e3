#include "platform/automation_ledger.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

namespace TestSupport {

namespace {

AutomationLedger* currentLedger = nullptr;

constexpr int kFreedByte = 0xDD;

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
  EXPECT_EQ(currentLedger, nullptr) << "one ledger at a time";
  currentLedger = this;
}

AutomationLedger::~AutomationLedger() {
  currentLedger = nullptr;
  for (const auto& [block, what] : blocks_) ADD_FAILURE() << "never freed: " << what;
  for (const auto& [block, kind] : freed_) {
    if (kind == Kept::kText) {
      freeText_.Original<decltype(SysFreeString)>()(static_cast<BSTR>(block));
    } else if (kind == Kept::kArray) {
      destroyArray_.Original<decltype(SafeArrayDestroy)>()(static_cast<SAFEARRAY*>(block));
    }
  }
}

std::size_t AutomationLedger::Outstanding() const {
  const std::lock_guard guard(lock_);
  return blocks_.size();
}

template <typename Block>
Block* AutomationLedger::Add(Block* block) {
  const std::lock_guard guard(lock_);
  if (block != nullptr) blocks_[block] = std::is_same_v<Block, SAFEARRAY> ? "an array" : "a string";
  return block;
}

bool AutomationLedger::ExpectLive(const void* block, const char* call) const {
  const std::lock_guard guard(lock_);
  const bool live = freed_.find(const_cast<void*>(block)) == freed_.end();
  EXPECT_TRUE(live) << call << " of a block that was freed before";
  return live;
}

/// Blocks of unknown origin are kept too: the system allocates some for its caller.
bool AutomationLedger::Keep(void* block, Kept kind, const char* call) {
  if (block == nullptr || !ExpectLive(block, call)) return false;
  const std::lock_guard guard(lock_);
  blocks_.erase(block);
  freed_[block] = kind;
  return true;
}

void AutomationLedger::KeepText(BSTR text, const char* call) {
  if (Keep(text, Kept::kText, call)) std::memset(text, kFreedByte, SysStringByteLen(text));
}

/// Also keeps the strings in an array of strings, which are freed with it.
void AutomationLedger::KeepArray(SAFEARRAY* array, const char* call) {
  if (!Keep(array, Kept::kArray, call)) return;
  EXPECT_EQ(array->cLocks, 0U) << call << " of a locked array";
  array->cLocks = 0;
  if ((array->fFeatures & FADF_BSTR) == 0) {
    std::memset(array->pvData, kFreedByte, array->rgsabound[0].cElements * array->cbElements);
    return;
  }
  auto* texts = static_cast<BSTR*>(array->pvData);
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
    if (!Keep(texts[i], Kept::kPartOfArray, call)) texts[i] = nullptr;
  }
}

BSTR WINAPI AutomationLedger::AllocText(const OLECHAR* text) {
  if (!currentLedger->refusedText.empty() && text == currentLedger->refusedText) return nullptr;
  return currentLedger->Add(currentLedger->allocText_.Original<decltype(SysAllocString)>()(text));
}

BSTR WINAPI AutomationLedger::AllocTextLen(const OLECHAR* text, UINT length) {
  return currentLedger->Add(
      currentLedger->allocTextLen_.Original<decltype(SysAllocStringLen)>()(text, length));
}

void WINAPI AutomationLedger::FreeText(BSTR text) {
  currentLedger->KeepText(text, "SysFreeString");
}

SAFEARRAY* WINAPI AutomationLedger::CreateVector(VARTYPE type, LONG lowerBound, ULONG count) {
  if (++currentLedger->vectorCalls == currentLedger->refusedVector) return nullptr;
  return currentLedger->Add(
      currentLedger->createVector_.Original<decltype(SafeArrayCreateVector)>()(type, lowerBound,
                                                                               count));
}

SAFEARRAY* WINAPI AutomationLedger::CreateArray(VARTYPE type, UINT dimensions,
                                                SAFEARRAYBOUND* bounds) {
  return currentLedger->Add(
      currentLedger->createArray_.Original<decltype(SafeArrayCreate)>()(type, dimensions, bounds));
}

HRESULT WINAPI AutomationLedger::DestroyArray(SAFEARRAY* array) {
  currentLedger->KeepArray(array, "SafeArrayDestroy");
  return S_OK;
}

HRESULT WINAPI AutomationLedger::ClearVariant(VARIANTARG* value) {
  if ((value->vt & VT_ARRAY) != 0) {
    currentLedger->KeepArray(value->parray, "VariantClear");
  } else if (value->vt == VT_BSTR) {
    currentLedger->KeepText(value->bstrVal, "VariantClear");
  } else {
    return currentLedger->clearVariant_.Original<decltype(VariantClear)>()(value);
  }
  value->vt = VT_EMPTY;
  return S_OK;
}

HRESULT WINAPI AutomationLedger::Access(SAFEARRAY* array, void** data) {
  ++currentLedger->accessCalls;
  currentLedger->ExpectLive(array, "SafeArrayAccessData");
  if (currentLedger->accessResult != S_OK) return currentLedger->accessResult;
  return currentLedger->access_.Original<decltype(SafeArrayAccessData)>()(array, data);
}

HRESULT WINAPI AutomationLedger::Unaccess(SAFEARRAY* array) {
  ++currentLedger->unaccessCalls;
  currentLedger->ExpectLive(array, "SafeArrayUnaccessData");
  const HRESULT result =
      currentLedger->unaccess_.Original<decltype(SafeArrayUnaccessData)>()(array);
  return currentLedger->unaccessResult != S_OK ? currentLedger->unaccessResult : result;
}

HRESULT WINAPI AutomationLedger::PutElement(SAFEARRAY* array, LONG* index, void* element) {
  currentLedger->ExpectLive(array, "SafeArrayPutElement");
  if (currentLedger->putElementResult != S_OK) return currentLedger->putElementResult;
  return currentLedger->putElement_.Original<decltype(SafeArrayPutElement)>()(array, index,
                                                                              element);
}

HRESULT WINAPI AutomationLedger::GetElement(SAFEARRAY* array, LONG* index, void* element) {
  ++currentLedger->getElementCalls;
  currentLedger->ExpectLive(array, "SafeArrayGetElement");
  const bool refused =
      currentLedger->getElementResult != S_OK && *index == currentLedger->refusedIndex;
  if (refused) return currentLedger->getElementResult;
  const HRESULT result =
      currentLedger->getElement_.Original<decltype(SafeArrayGetElement)>()(array, index, element);
  if (SUCCEEDED(result) && (array->fFeatures & FADF_BSTR) != 0) {
    currentLedger->Add(*static_cast<BSTR*>(element));
  }
  return result;
}

}  // namespace TestSupport
