#include "platform/winrt/activation.h"

#include <combaseapi.h>
#include <roapi.h>

namespace Zq::Gantry::Platform::WinRt {

namespace {

/// Kept on purpose: nobody gives the apartment up again, as with the runtime's own projection. What
/// was made in it may live as long as the process (test
/// SharedDocument.KeepsTheApartmentAliveForAThreadWithoutOne).
void KeepApartmentAlive() {
  CO_MTA_USAGE_COOKIE cookie = nullptr;
  RaiseIfFailed(CoIncrementMTAUsage(&cookie));
}

}  // namespace

UniqueInterface<IInspectable> ActivateInstance(std::wstring_view className) {
  const UniqueHString name = MakeHString(className);
  UniqueInterface<IInspectable> object;
  RaiseIfFailed(RoActivateInstance(name.get(), object.out()));
  if (!object) throw CallFailure(E_POINTER);
  return object;
}

UniqueInterface<IActivationFactory> FetchActivationFactory(std::wstring_view className) {
  const UniqueHString name = MakeHString(className);
  UniqueInterface<IActivationFactory> factory;
  const auto ask = [&name, &factory] {
    return RoGetActivationFactory(name.get(), __uuidof(IActivationFactory),
                                  reinterpret_cast<void**>(factory.out()));
  };
  HRESULT result = ask();
  if (result == CO_E_NOTINITIALIZED) {
    KeepApartmentAlive();
    result = ask();
  }
  RaiseIfFailed(result);
  if (!factory) throw CallFailure(E_POINTER);
  return factory;
}

}  // namespace Zq::Gantry::Platform::WinRt
