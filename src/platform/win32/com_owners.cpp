#include "platform/win32/com_owners.h"

#include <comdef.h>

namespace Zq::Gantry::Platform {

UniqueBstr MakeBstr(const wchar_t* text) {
  UniqueBstr copy(SysAllocString(text));
  if (!copy) _com_issue_error(E_OUTOFMEMORY);
  return copy;
}

bool IsVectorOf(SAFEARRAY* array, VARTYPE elementType, UINT elementBytes) {
  VARTYPE type = VT_EMPTY;
  return array != nullptr && SafeArrayGetDim(array) == 1 &&
         SafeArrayGetElemsize(array) == elementBytes &&
         SUCCEEDED(SafeArrayGetVartype(array, &type)) && type == elementType;
}

void ScopedVariant::SetInt32(LONG number) {
  value_.vt = VT_I4;
  value_.lVal = number;
}

void ScopedVariant::AdoptArray(VARTYPE elementType, SAFEARRAY* array) {
  value_.vt = static_cast<VARTYPE>(VT_ARRAY | elementType);
  value_.parray = array;
}

void ScopedVariant::ShareObject(IUnknown* object) {
  object->AddRef();
  value_.vt = VT_UNKNOWN;
  value_.punkVal = object;
}

ScopedSafeArrayAccess::ScopedSafeArrayAccess(SAFEARRAY* array) : array_(array) {
  void* data = nullptr;
  result_ = SafeArrayAccessData(array, &data);
  open_ = SUCCEEDED(result_);
}

ScopedSafeArrayAccess::~ScopedSafeArrayAccess() {
  if (open_) static_cast<void>(Close());  // a failure is ignored
}

HRESULT ScopedSafeArrayAccess::Close() {
  open_ = false;
  return SafeArrayUnaccessData(array_);
}

}  // namespace Zq::Gantry::Platform
