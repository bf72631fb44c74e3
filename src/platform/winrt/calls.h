#pragma once

#include <windows.h>

#include <unknwn.h>

#include <string>

#include "platform/win32/com_owners.h"
#include "platform/winrt/call_failure.h"
#include "platform/winrt/hstring.h"

// The runtime's properties and operations without arguments, called by their member pointers. Each
// raises CallFailure where the call fails; one that succeeds without an object has failed too.
// `Declarer` is the type that declares the operation: `Interface` or a base of it.
namespace Zq::Gantry::Platform::WinRt {

template <typename Interface, typename Declarer, typename Object>
UniqueInterface<Object> FetchObject(Interface& from,
                                    HRESULT (STDMETHODCALLTYPE Declarer::*call)(Object**)) {
  UniqueInterface<Object> object;
  RaiseIfFailed((from.*call)(object.out()));
  if (!object) throw CallFailure(E_POINTER);
  return object;
}

template <typename Interface, typename Declarer, typename Value>
Value FetchValue(Interface& from, HRESULT (STDMETHODCALLTYPE Declarer::*call)(Value*)) {
  Value value{};
  RaiseIfFailed((from.*call)(&value));
  return value;
}

template <typename Interface, typename Declarer>
std::wstring FetchText(Interface& from, HRESULT (STDMETHODCALLTYPE Declarer::*call)(HSTRING*)) {
  UniqueHString text;
  RaiseIfFailed((from.*call)(text.out()));
  return TextOf(text.get());
}

/// Another interface of the same object.
template <typename Other>
UniqueInterface<Other> FetchInterface(IUnknown& object) {
  UniqueInterface<Other> other;
  RaiseIfFailed(object.QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.out())));
  if (!other) throw CallFailure(E_POINTER);
  return other;
}

}  // namespace Zq::Gantry::Platform::WinRt
