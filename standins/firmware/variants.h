#pragma once

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <string>
#include <vector>

// Part of the stand-in for the firmware's WMI objects: values as WMI hands them out. They are made
// by other calls than those that the library under test makes, so that a test can replace the
// latter.
namespace Standin::Firmware {

inline void MakeArray(VARIANT* value, VARTYPE type, LONG lowerBound, ULONG count) {
  SAFEARRAYBOUND bound{count, lowerBound};
  value->vt = static_cast<VARTYPE>(VT_ARRAY | type);
  value->parray = SafeArrayCreate(type, 1, &bound);
}

inline void MakeText(VARIANT* value, const std::wstring& text) {
  value->vt = VT_BSTR;
  value->bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

inline void MakeNumber(VARIANT* value, LONG number) {
  value->vt = VT_I4;
  value->lVal = number;
}

inline void MakeTruth(VARIANT* value, VARIANT_BOOL truth) {
  value->vt = VT_BOOL;
  value->boolVal = truth;
}

inline void MakeTexts(VARIANT* value, const std::vector<std::wstring>& texts) {
  MakeArray(value, VT_BSTR, 0, static_cast<ULONG>(texts.size()));
  auto* elements = static_cast<BSTR*>(value->parray->pvData);
  for (const std::wstring& text : texts) {
    *elements++ = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  }
}

template <typename Element>
void MakeElements(VARIANT* value, VARTYPE type, LONG lowerBound,
                  const std::vector<Element>& elements) {
  MakeArray(value, type, lowerBound, static_cast<ULONG>(elements.size()));
  auto* target = static_cast<Element*>(value->parray->pvData);
  for (const Element element : elements) *target++ = element;
}

}  // namespace Standin::Firmware
