#pragma once

#include <windows.h>

#include <oleauto.h>

#include "platform/win32/owners.h"

// The owners of COM and Automation resources.
namespace Zq::Gantry::Platform {

/// One reference to a COM interface.
template <typename Interface>
struct InterfacePolicy {
  using Type = Interface*;
  static Type Empty() { return nullptr; }
  static void Release(Type object) {
    const LastErrorKeeper keeper;
    object->Release();
  }
};
template <typename Interface>
using UniqueInterface = UniqueResource<InterfacePolicy<Interface>>;

struct BstrPolicy {
  using Type = BSTR;
  static Type Empty() { return nullptr; }
  static void Release(Type text) {
    const LastErrorKeeper keeper;
    SysFreeString(text);
  }
};
using UniqueBstr = UniqueResource<BstrPolicy>;

/// A copy of `text`; raises _com_error with E_OUTOFMEMORY where it cannot be allocated.
UniqueBstr MakeBstr(const wchar_t* text);

struct SafeArrayPolicy {
  using Type = SAFEARRAY*;
  static Type Empty() { return nullptr; }
  static void Release(Type array) {
    const LastErrorKeeper keeper;
    SafeArrayDestroy(array);
  }
};
using UniqueSafeArray = UniqueResource<SafeArrayPolicy>;

/// A VARIANT with its content. The setters are for one that is still empty.
class ScopedVariant {
 public:
  ScopedVariant() { VariantInit(&value_); }
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant& operator=(const ScopedVariant&) = delete;
  ~ScopedVariant() { VariantClear(&value_); }

  VARIANT* get() { return &value_; }
  const VARIANT& operator*() const { return value_; }
  const VARIANT* operator->() const { return &value_; }

  void SetInt32(LONG number);
  /// Takes the array over; null is allowed.
  void AdoptArray(VARTYPE elementType, SAFEARRAY* array);
  /// Takes a reference of its own.
  void ShareObject(IUnknown* object);

 private:
  VARIANT value_;
};

/// The lock of a safe array's data; the array outlives it. Opened by the constructor, closed by
/// Close or, where nobody asks how that went, by the destructor.
class ScopedSafeArrayAccess {
 public:
  explicit ScopedSafeArrayAccess(SAFEARRAY* array);
  ScopedSafeArrayAccess(const ScopedSafeArrayAccess&) = delete;
  ScopedSafeArrayAccess& operator=(const ScopedSafeArrayAccess&) = delete;
  ~ScopedSafeArrayAccess();

  /// What SafeArrayAccessData gave.
  HRESULT Result() const { return result_; }
  /// What SafeArrayUnaccessData gives; to be called once, after a successful opening.
  HRESULT Close();

 private:
  SAFEARRAY* array_;
  HRESULT result_;
  bool open_;
};

}  // namespace Zq::Gantry::Platform
