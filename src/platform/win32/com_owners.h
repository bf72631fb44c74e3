#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <utility>

#include "platform/win32/unique_resource.h"

// The owners of COM and Automation resources, and of a thread's membership in COM.
namespace Zq::Gantry::Platform {

/// Membership of the calling thread in the multithreaded COM apartment: begun by the constructor
/// (CoInitializeEx), ended by the destructor (CoUninitialize), which must run on the same thread.
///
/// Kept on purpose: CoUninitialize is called even if CoInitializeEx failed. On a thread of another
/// apartment that undoes one of the initialisations that others made.
class ComMembership {
 public:
  ComMembership() : result_(CoInitializeEx(/*reserved=*/nullptr, COINIT_MULTITHREADED)) {}
  /// Takes the membership over; `other` no longer ends it.
  ComMembership(ComMembership&& other) noexcept
      : result_(other.result_), held_(std::exchange(other.held_, false)) {}
  ComMembership& operator=(ComMembership&&) = delete;
  ~ComMembership() {
    if (held_) CoUninitialize();
  }

  /// The result of CoInitializeEx; a failure is RPC_E_CHANGED_MODE or lack of memory.
  [[nodiscard]] HRESULT Result() const { return result_; }
  /// The destructor no longer calls CoUninitialize: a thread that has joined stays a member.
  void GiveUp() { held_ = false; }

 private:
  HRESULT result_;
  bool held_ = true;
};

/// One reference to a COM object (IUnknown::Release).
template <typename Interface>
struct InterfacePolicy {
  using Type = Interface*;
  static Type Empty() { return nullptr; }
  static void Release(Type object) { object->Release(); }
};
template <typename Interface>
using UniqueInterface = UniqueResource<InterfacePolicy<Interface>>;

/// Text of Automation, from SysAllocString (SysFreeString). Null is an empty text.
struct BstrPolicy {
  using Type = BSTR;
  static Type Empty() { return nullptr; }
  static void Release(Type text) { SysFreeString(text); }
};
using UniqueBstr = UniqueResource<BstrPolicy>;

/// A copy of `text`, up to its terminator. Throws _com_error with E_OUTOFMEMORY if memory runs out.
[[nodiscard]] UniqueBstr MakeBstr(const wchar_t* text);

/// Safe array with its elements (SafeArrayDestroy). It must not be locked when it is released.
struct SafeArrayPolicy {
  using Type = SAFEARRAY*;
  static Type Empty() { return nullptr; }
  static void Release(Type array) { SafeArrayDestroy(array); }
};
using UniqueSafeArray = UniqueResource<SafeArrayPolicy>;

/// Whether `array`, which another component made, has one dimension and elements of this type and
/// size, as its variant says. To be checked before an element is read. False for null.
[[nodiscard]] bool IsVectorOf(SAFEARRAY* array, VARTYPE elementType, UINT elementBytes);

/// A VARIANT, cleared with its content at the end (VariantClear). The setters release no earlier
/// content, so they are for a variant that is still empty.
class ScopedVariant {
 public:
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-member-init): the call writes all that counts
  ScopedVariant() { VariantInit(&value_); }
  ScopedVariant(const ScopedVariant&) = delete;
  ScopedVariant& operator=(const ScopedVariant&) = delete;
  ~ScopedVariant() { VariantClear(&value_); }

  /// For a call that reads or writes the variant, which stays this object's.
  [[nodiscard]] VARIANT* get() { return &value_; }
  [[nodiscard]] const VARIANT& operator*() const { return value_; }
  [[nodiscard]] const VARIANT* operator->() const { return &value_; }

  /// VT_I4.
  void SetInt32(LONG number);
  /// VT_ARRAY of `elementType`. Takes the array over; null is allowed.
  void AdoptArray(VARTYPE elementType, SAFEARRAY* array);
  /// VT_UNKNOWN. Takes a reference of its own; `object` is not null.
  void ShareObject(IUnknown* object);

 private:
  VARIANT value_;
};

/// The lock of a safe array's data (SafeArrayAccessData), begun by the constructor and ended by
/// Close or the destructor. The array must outlive it.
class ScopedSafeArrayAccess {
 public:
  explicit ScopedSafeArrayAccess(SAFEARRAY* array);
  ScopedSafeArrayAccess(const ScopedSafeArrayAccess&) = delete;
  ScopedSafeArrayAccess& operator=(const ScopedSafeArrayAccess&) = delete;
  /// Ends an open lock and ignores a failure.
  ~ScopedSafeArrayAccess();

  /// The result of SafeArrayAccessData; after a failure there is no lock to end.
  [[nodiscard]] HRESULT Result() const { return result_; }
  /// Ends the lock and returns the result of SafeArrayUnaccessData. To be called at most once, and
  /// only if Result() is a success.
  [[nodiscard]] HRESULT Close();

 private:
  SAFEARRAY* array_;
  HRESULT result_;
  bool open_;
};

}  // namespace Zq::Gantry::Platform
