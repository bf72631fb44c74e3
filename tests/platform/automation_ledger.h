#pragma once

#include <windows.h>

#include <oleauto.h>

#include <map>
#include <mutex>
#include <string>

#include "import_patch.h"

namespace TestSupport {

/// Follows every text and safe array that the test program gets from Automation and gives back, and
/// makes single calls fail. From any thread; one at a time.
///
/// The test fails where a block is freed twice, is used after that, is destroyed while its data are
/// locked, or is still there at the end. So that each of these is seen and none does harm, freed
/// blocks are overwritten and kept until the ledger ends.
class AutomationLedger {
 public:
  AutomationLedger();
  AutomationLedger(const AutomationLedger&) = delete;
  AutomationLedger& operator=(const AutomationLedger&) = delete;
  ~AutomationLedger();

  /// Blocks that were allocated since the ledger began and not given back yet.
  std::size_t Outstanding() const;

  /// SysAllocString gives null for this text.
  std::wstring refusedText;
  /// Which call of SafeArrayCreateVector, counted from 1, gives null.
  int refusedVector = 0;
  /// What the calls answer in place of working, where it is not S_OK.
  HRESULT accessResult = S_OK;
  HRESULT unaccessResult = S_OK;
  HRESULT putElementResult = S_OK;
  HRESULT getElementResult = S_OK;
  /// The only index that getElementResult is about.
  LONG refusedIndex = 0;

  int vectorCalls = 0;
  int accessCalls = 0;
  int unaccessCalls = 0;
  int getElementCalls = 0;

 private:
  /// What a freed block needs at the end of the ledger.
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
  /// Whether the block was not freed before; fails the test if it was.
  bool ExpectLive(const void* block, const char* call) const;
  bool Keep(void* block, Kept kind, const char* call);
  void KeepText(BSTR text, const char* call);
  void KeepArray(SAFEARRAY* array, const char* call);

  mutable std::mutex lock_;
  std::map<const void*, const char*> blocks_;  // and what each is
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
