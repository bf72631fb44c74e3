#include "locator.h"

#include <wbemidl.h>

#include <string>

#include "firmware_script.h"
#include "live_object.h"
#include "platform/win32/com_owners.h"
#include "services.h"

namespace Standin::Firmware {

namespace {

class Locator final : public LiveObject<IWbemLocator> {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IWbemLocator) return E_NOINTERFACE;
    *object = static_cast<IWbemLocator*>(this);
    AddRef();
    return S_OK;
  }

  STDMETHODIMP ConnectServer(const BSTR resource, const BSTR user, const BSTR password,
                             const BSTR locale, LONG flags, const BSTR authority,
                             IWbemContext* context, IWbemServices** services) override {
    *services = nullptr;
    const bool plain = user == nullptr && password == nullptr && locale == nullptr && flags == 0 &&
                       authority == nullptr && context == nullptr;
    const std::string call = "ConnectServer(" + NarrowBstr(resource) + ")";
    if (const auto result = TheScript().Enter(call, plain ? "" : "with arguments")) return *result;
    const std::wstring name = resource;
    if (name != L"ROOT\\CIMV2" && name != L"\\\\.\\root\\wmi") {
      return static_cast<HRESULT>(WBEM_E_INVALID_NAMESPACE);
    }
    *services = new Services;
    return S_OK;
  }

 private:
  ~Locator() override { TheScript().End("locator"); }
};

class Factory final : public IClassFactory {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override {
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }

  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) override {
    *object = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    if (const auto result = TheScript().Enter("CreateInstance")) return *result;
    const Zq::Gantry::Platform::UniqueInterface<Locator> locator(new Locator);
    return locator.get()->QueryInterface(iid, object);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }
};

}  // namespace

IClassFactory& LocatorFactory() {
  static Factory factory;
  return factory;
}

}  // namespace Standin::Firmware
