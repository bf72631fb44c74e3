#include "platform/wmi/public_wmi.h"

#include <array>

#include "platform/win32/com_owners.h"

namespace Zq::Gantry::Server::Shared::WMI {

namespace {

using Allocator = WideDocument::AllocatorType;

HRESULT AppendText(SAFEARRAY* array, LONG index, WideValue& target, Allocator& allocator) {
  Platform::UniqueBstr text;
  const HRESULT result = SafeArrayGetElement(array, &index, text.out());
  if (FAILED(result)) return result;
  WideValue element(text ? text.get() : L"", allocator);
  target.PushBack(element, allocator);
  return result;
}

HRESULT AppendNumber(SAFEARRAY* array, LONG index, WideValue& target, Allocator& allocator) {
  LONG number = 0;
  const HRESULT result = SafeArrayGetElement(array, &index, &number);
  if (SUCCEEDED(result)) target.PushBack(static_cast<int>(number), allocator);
  return result;
}

HRESULT AppendTruth(SAFEARRAY* array, LONG index, WideValue& target, Allocator& allocator) {
  VARIANT_BOOL truth = VARIANT_FALSE;
  const HRESULT result = SafeArrayGetElement(array, &index, &truth);
  if (SUCCEEDED(result)) target.PushBack(truth != 0, allocator);
  return result;
}

struct ElementKind {
  VARTYPE type;
  UINT bytes;
  HRESULT (*append)(SAFEARRAY*, LONG index, WideValue& target, Allocator&);
};

constexpr std::array<ElementKind, 3> kElementKinds{{
    {VT_BSTR, sizeof(BSTR), AppendText},
    {VT_I4, sizeof(LONG), AppendNumber},
    {VT_BOOL, sizeof(VARIANT_BOOL), AppendTruth},
}};

const ElementKind* FindElementKind(VARTYPE variantType) {
  for (const ElementKind& kind : kElementKinds) {
    if (variantType == (VT_ARRAY | kind.type)) return &kind;
  }
  return nullptr;
}

/// S_OK if all elements were read, S_FALSE if the array is empty or of another shape, else the
/// failure.
HRESULT AppendElements(SAFEARRAY* array, const ElementKind& kind, WideValue& target,
                       Allocator& allocator) {
  if (!Platform::IsVectorOf(array, kind.type, kind.bytes)) return S_FALSE;
  const auto count = static_cast<LONG>(array->rgsabound[0].cElements);
  if (count == 0) return S_FALSE;
  // Kept on purpose: indexes count from 0, even with another lower bound, and a count below 0 is a
  // success without elements (tests GetSafeArrayData.ReadsFromIndexZeroForANegativeLowerBound,
  // GetSafeArrayData.SucceedsWithoutElementsForANegativeCount).
  for (LONG i = 0; i < count; ++i) {
    const HRESULT result = kind.append(array, i, target, allocator);
    if (FAILED(result)) return result;
  }
  return S_OK;
}

}  // namespace

bool PublicWmi::GetSafeArrayData(VARIANT source, WideValue& target, WideDocument& document) {
  const ElementKind* kind = FindElementKind(source.vt);
  if (kind == nullptr) return false;

  Platform::ScopedSafeArrayAccess access(source.parray);
  if (FAILED(access.Result())) {
    // Kept on purpose: the text names this type for all three array types (test
    // GetSafeArrayData.LogsTheSameTextForANullArrayOfAnyType).
    Log().Warn("GetSafeArrayData", L"SafeArrayAccessData(VT_ARRAY | VT_UI1)", access.Result());
    return false;
  }

  const HRESULT result = AppendElements(source.parray, *kind, target, document.GetAllocator());
  if (FAILED(result)) Log().Warn("GetSafeArrayData", L"SafeArrayGetElement", result);

  const HRESULT closed = access.Close();
  if (FAILED(closed)) Log().Warn("GetSafeArrayData", L"SafeArrayUnaccessData", closed);
  return result == S_OK;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
