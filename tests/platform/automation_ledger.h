#pragma once

#include <windows.h>

#include <oleauto.h>

#include <map>
#include <mutex>
#include <string>

#include "import_patch.h"

namespace TestSupport {

/// Tracks every BSTR and safe array that the test program allocates and frees, and can make single
/// calls fail. From any thread; one at a time.
///
/// Fails the test if a block is freed twice, used after it was freed, destroyed while locked, or
/// not freed when the ledger ends. Freed blocks are overwritten and released only by the
/// destructor, so that these errors are detected and do no harm.
class AutomationLedger {
 public:
  AutomationLedger();
  AutomationLedger(const AutomationLedger&) = delete;
  AutomationLedger& operator=(const AutomationLedger&) = delete;
  ~AutomationLedger();

  /// The number of blocks allocated since the ledger began and not yet freed.
  [[nodiscard]] std::size_t Outstanding() const;

  /// SysAllocString returns null for this text, unless it is empty.
  std::wstring refusedText;
  /// Which call of SafeArrayCreateVector, counted from 1, returns null; 0 for none.
  int refusedVector = 0;
  /// If not S_OK, the call returns this; only SafeArrayUnaccessData still does its work.
  HRESULT accessResult = S_OK;
  HRESULT unaccessResult = S_OK;
  HRESULT putElementResult = S_OK;
  HRESULT getElementResult = S_OK;
  /// The only index to which getElementResult applies.
  LONG refusedIndex = 0;

  int vectorCalls = 0;
  int accessCalls = 0;
  int unaccessCalls = 0;
  int getElementCalls = 0;

 private:
  /// How the destructor releases a freed block.
  enum class Kept { kText, kArray, kPartOfArray };

  static BSTR WINAPI AllocText(const OLECHAR* text);
  static BSTR WINAPI AllocTextLen(const OLECHAR* text, UINT length);
  static void WINAPI FreeText(BSTR text);
  static SAFEARRAY* WINAPI CreateVector(VARTYPE type, LONG lowerBound, ULONG count);
  static SAFEARRAY* WINAPI CreateArray(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds);
  static HRESULT WINAPI DestroyArray(SAFEARRAY* array);
  static HRESULT WINAPI ClearVariant(VARIANTARG* value);
  static HRESULT WINAPI Access(SAFEARRAY* array, void** data);
  static HRESULT WINAPI Unaccess(SAFEARRAY* array);
  static HRESULT WINAPI PutElement(SAFEARRAY* array, LONG* index, void* element);
  static HRESULT WINAPI GetElement(SAFEARRAY* array, LONG* index, void* element);

  template <typename Block>
  Block* Add(Block* block);
  /// False, and the test fails, if the block was freed before.
  bool ExpectLive(const void* block, const char* call) const;
  bool Keep(void* block, Kept kind, const char* call);
  void KeepText(BSTR text, const char* call);
  void KeepArray(SAFEARRAY* array, const char* call);

  mutable std::mutex lock_;
  std::map<const void*, const char*> blocks_;  // what each block is
  std::map<void*, Kept> freed_;
  Standin::ImportPatch allocText_;
  Standin::ImportPatch allocTextLen_;
  Standin::ImportPatch freeText_;
  Standin::ImportPatch createVector_;
  Standin::ImportPatch createArray_;
  Standin::ImportPatch destroyArray_;
  Standin::ImportPatch clearVariant_;
  Standin::ImportPatch access_;
  Standin::ImportPatch unaccess_;
  Standin::ImportPatch putElement_;
  Standin::ImportPatch getElement_;
};

}  // namespace TestSupport
