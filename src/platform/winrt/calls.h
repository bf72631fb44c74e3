#pragma once

#include <windows.h>

#include <hstring.h>
#include <unknwn.h>

#include <exception>
#include <string>
#include <string_view>

#include "platform/win32/com_owners.h"
#include "platform/winrt/runtime_text.h"

// Calls of the Windows Runtime: their failures as exceptions, their texts as strings, and its
// properties and operations without arguments, called by their member pointers. `Declarer` is the
// type that declares the operation: `Interface` or a base of it. Nothing is logged. Each call runs
// on the calling thread.
//
//   const auto id = FetchObject(package, &IPackage::get_Id);
//   const std::wstring name = FetchText(*id.get(), &IPackageId::get_Name);
namespace Zq::Gantry::Platform::WinRt {

/// A call of the Windows Runtime that failed, or that succeeded without returning an object.
class CallFailure : public std::exception {
 public:
  explicit CallFailure(HRESULT result) : result_(result) {}

  /// The result of the call; E_POINTER for a missing object.
  [[nodiscard]] HRESULT Result() const { return result_; }
  [[nodiscard]] const char* what() const noexcept override {
    return "a call of the Windows Runtime failed";
  }

 private:
  HRESULT result_;
};

/// Throws CallFailure if `result` is a failure (FAILED).
inline void ThrowIfFailed(HRESULT result) {
  if (FAILED(result)) throw CallFailure(result);
}

/// A copy of `text` (WindowsCreateString), embedded zeros included. Throws CallFailure if the
/// call fails.
[[nodiscard]] UniqueHString MakeHString(std::wstring_view text);

/// A copy of the characters of `text`, embedded zeros included. Null is an empty text.
[[nodiscard]] std::wstring TextOf(HSTRING text);

/// The object that the call returns, with its reference. Throws CallFailure if the call fails or
/// returns null.
template <typename Interface, typename Declarer, typename Object>
[[nodiscard]] UniqueInterface<Object> FetchObject(
    Interface& from, HRESULT (STDMETHODCALLTYPE Declarer::*call)(Object**)) {
  UniqueInterface<Object> object;
  ThrowIfFailed((from.*call)(object.out()));
  if (!object) throw CallFailure(E_POINTER);
  return object;
}

/// The number or truth value that the call returns. Throws CallFailure if the call fails.
template <typename Interface, typename Declarer, typename Value>
[[nodiscard]] Value FetchValue(Interface& from,
                               HRESULT (STDMETHODCALLTYPE Declarer::*call)(Value*)) {
  Value value{};
  ThrowIfFailed((from.*call)(&value));
  return value;
}

/// A copy of the text that the call returns, embedded zeros included. Throws CallFailure if the
/// call fails.
template <typename Interface, typename Declarer>
[[nodiscard]] std::wstring FetchText(Interface& from,
                                     HRESULT (STDMETHODCALLTYPE Declarer::*call)(HSTRING*)) {
  UniqueHString text;
  ThrowIfFailed((from.*call)(text.out()));
  return TextOf(text.get());
}

/// Another interface of the same object, with a reference of its own (QueryInterface). Throws
/// CallFailure if the object lacks it, or if the result is null.
template <typename Other>
[[nodiscard]] UniqueInterface<Other> FetchInterface(IUnknown& object) {
  UniqueInterface<Other> other;
  ThrowIfFailed(object.QueryInterface(__uuidof(Other), reinterpret_cast<void**>(other.out())));
  if (!other) throw CallFailure(E_POINTER);
  return other;
}

}  // namespace Zq::Gantry::Platform::WinRt
