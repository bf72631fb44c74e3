#include "platform/automation_ledger.h"

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

namespace TestSupport {

namespace {

AutomationLedger* current = nullptr;

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
  EXPECT_EQ(current, nullptr) << "one ledger at a time";
  current = this;
}

AutomationLedger::~AutomationLedger() {
  current = nullptr;
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
  if (!current->refusedText.empty() && text == current->refusedText) return nullptr;
  return current->Add(current->allocText_.Original<decltype(SysAllocString)>()(text));
}

BSTR WINAPI AutomationLedger::AllocTextLen(const OLECHAR* text, UINT length) {
  return current->Add(current->allocTextLen_.Original<decltype(SysAllocStringLen)>()(text, length));
}

void WINAPI AutomationLedger::FreeText(BSTR text) { current->KeepText(text, "SysFreeString"); }

SAFEARRAY* WINAPI AutomationLedger::CreateVector(VARTYPE type, LONG lowerBound, ULONG count) {
  if (++current->vectorCalls == current->refusedVector) return nullptr;
  return current->Add(
      current->createVector_.Original<decltype(SafeArrayCreateVector)>()(type, lowerBound, count));
}

SAFEARRAY* WINAPI AutomationLedger::CreateArray(VARTYPE type, UINT dimensions,
                                                SAFEARRAYBOUND* bounds) {
  return current->Add(
      current->createArray_.Original<decltype(SafeArrayCreate)>()(type, dimensions, bounds));
}

HRESULT WINAPI AutomationLedger::DestroyArray(SAFEARRAY* array) {
  current->KeepArray(array, "SafeArrayDestroy");
  return S_OK;
}

HRESULT WINAPI AutomationLedger::ClearVariant(VARIANTARG* value) {
  if ((value->vt & VT_ARRAY) != 0) {
    current->KeepArray(value->parray, "VariantClear");
  } else if (value->vt == VT_BSTR) {
    current->KeepText(value->bstrVal, "VariantClear");
  } else {
    return current->clearVariant_.Original<decltype(VariantClear)>()(value);
  }
  value->vt = VT_EMPTY;
  return S_OK;
}

HRESULT WINAPI AutomationLedger::Access(SAFEARRAY* array, void** data) {
  ++current->accessCalls;
  current->ExpectLive(array, "SafeArrayAccessData");
  if (current->accessResult != S_OK) return current->accessResult;
  return current->access_.Original<decltype(SafeArrayAccessData)>()(array, data);
}

HRESULT WINAPI AutomationLedger::Unaccess(SAFEARRAY* array) {
  ++current->unaccessCalls;
  current->ExpectLive(array, "SafeArrayUnaccessData");
  const HRESULT result = current->unaccess_.Original<decltype(SafeArrayUnaccessData)>()(array);
  return current->unaccessResult != S_OK ? current->unaccessResult : result;
}

HRESULT WINAPI AutomationLedger::PutElement(SAFEARRAY* array, LONG* index, void* element) {
  current->ExpectLive(array, "SafeArrayPutElement");
  if (current->putElementResult != S_OK) return current->putElementResult;
  return current->putElement_.Original<decltype(SafeArrayPutElement)>()(array, index, element);
}

HRESULT WINAPI AutomationLedger::GetElement(SAFEARRAY* array, LONG* index, void* element) {
  ++current->getElementCalls;
  current->ExpectLive(array, "SafeArrayGetElement");
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
