#pragma once

#include <windows.h>

#include <objidl.h>

#include "live_object.h"
#include "unused_wmi_methods.h"

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// IWbemServices, and IClientSecurity, through which CoSetProxyBlanket sets the security of a
/// proxy: this object is not a proxy, so it implements the interface itself.
class SecuredServices : public UnusedServicesMethods, public IClientSecurity {};

/// The connection to either namespace: the firmware's classes and the machine's description.
class Services final : public LiveObject<SecuredServices> {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) override;

  STDMETHODIMP GetObject(const BSTR path, LONG flags, IWbemContext* context,
                         IWbemClassObject** object, IWbemCallResult** callResult) override;
  STDMETHODIMP CreateInstanceEnum(const BSTR filter, LONG flags, IWbemContext* context,
                                  IEnumWbemClassObject** objects) override;
  STDMETHODIMP ExecQuery(const BSTR language, const BSTR query, LONG flags, IWbemContext* context,
                         IEnumWbemClassObject** objects) override;
  STDMETHODIMP ExecMethod(const BSTR path, const BSTR method, LONG flags, IWbemContext* context,
                          IWbemClassObject* input, IWbemClassObject** output,
                          IWbemCallResult** callResult) override;

  STDMETHODIMP QueryBlanket(IUnknown*, DWORD*, DWORD*, OLECHAR**, DWORD*, DWORD*, void**,
                            DWORD*) override {
    return E_NOTIMPL;
  }
  STDMETHODIMP SetBlanket(IUnknown* proxy, DWORD authentication, DWORD authorisation,
                          OLECHAR* principal, DWORD level, DWORD impersonation, void* identity,
                          DWORD capabilities) override;
  STDMETHODIMP CopyProxy(IUnknown*, IUnknown**) override { return E_NOTIMPL; }

 private:
  ~Services() override;
};

}  // namespace Standin::Firmware
