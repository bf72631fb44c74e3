#pragma once

#include <windows.h>

#include <inspectable.h>

#include <atomic>
#include <string>

#include <winstring.h>

#include "package_script.h"

// Part of the stand-in for the package manager.
namespace Standin::Packages {

/// The number of live objects of the stand-in.
[[nodiscard]] inline std::atomic<int>& LiveObjects() {
  static std::atomic<int> count{0};
  return count;
}

/// An object of the Windows Runtime: a reference count, of which the creator owns the first
/// reference, and QueryInterface for the listed interfaces. `Base` derives from all of them.
template <typename Base, typename FirstInterface, typename... Interfaces>
class RuntimeObject : public Base {
 public:
  RuntimeObject() { ++LiveObjects(); }
  RuntimeObject(const RuntimeObject&) = delete;
  RuntimeObject& operator=(const RuntimeObject&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IInspectable)) {
      *object = static_cast<FirstInterface*>(this);
    }
    Offer<FirstInterface>(iid, object);
    (Offer<Interfaces>(iid, object), ...);
    if (*object == nullptr) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  STDMETHODIMP GetIids(ULONG*, IID**) override { return E_NOTIMPL; }
  STDMETHODIMP GetRuntimeClassName(HSTRING*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTrustLevel(TrustLevel*) override { return E_NOTIMPL; }

 protected:
  virtual ~RuntimeObject() { --LiveObjects(); }

 private:
  template <typename Interface>
  void Offer(REFIID iid, void** object) {
    if (iid == __uuidof(Interface)) *object = static_cast<Interface*>(this);
  }

  std::atomic<ULONG> references_{1};
};

/// Ends `call` as the script says: with the object that `make` creates, which the caller owns, with
/// null, or with a failure.
template <typename Object, typename Make>
[[nodiscard]] HRESULT HandOut(const Script& script, const char* call, Object** object, Make make) {
  *object = nullptr;
  const HRESULT result = script.ResultOf(call);
  if (SUCCEEDED(result) && !script.ReturnsNull(call)) *object = make();
  return result;
}

/// The same for a text, of which the caller gets a new HSTRING.
[[nodiscard]] inline HRESULT HandOutText(const Script& script, const char* call,
                                         const std::wstring& text, HSTRING* value) {
  *value = nullptr;
  const HRESULT result = script.ResultOf(call);
  if (FAILED(result)) return result;
  return WindowsCreateString(text.data(), static_cast<UINT32>(text.size()), value);
}

/// The same for a plain value; a failure leaves `value` unchanged.
template <typename Value>
[[nodiscard]] HRESULT HandOutValue(const Script& script, const char* call, Value given,
                                   Value* value) {
  const HRESULT result = script.ResultOf(call);
  if (SUCCEEDED(result)) *value = given;
  return result;
}

}  // namespace Standin::Packages
