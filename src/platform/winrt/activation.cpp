#include "platform/winrt/activation.h"

#include <combaseapi.h>
#include <roapi.h>

namespace Zq::Gantry::Platform::WinRt {

namespace {

/// Kept on purpose: the apartment is never given up again, as with the runtime's own projection.
/// Objects made in it may live as long as the process (test
/// SharedDocument.KeepsTheApartmentAliveOnAThreadWithoutOne).
void KeepApartmentAlive() {
  CO_MTA_USAGE_COOKIE cookie = nullptr;
  ThrowIfFailed(CoIncrementMTAUsage(&cookie));
}

}  // namespace

UniqueInterface<IInspectable> ActivateInstance(std::wstring_view className) {
  const UniqueHString name = MakeHString(className);
  UniqueInterface<IInspectable> object;
  ThrowIfFailed(RoActivateInstance(name.get(), object.out()));
  if (!object) throw CallFailure(E_POINTER);
  return object;
}

UniqueInterface<IActivationFactory> FetchActivationFactory(std::wstring_view className) {
  const UniqueHString name = MakeHString(className);
  UniqueInterface<IActivationFactory> factory;
  const auto fetch = [&name, &factory] {
    return RoGetActivationFactory(name.get(), __uuidof(IActivationFactory),
                                  reinterpret_cast<void**>(factory.out()));
  };
  HRESULT result = fetch();
  if (result == CO_E_NOTINITIALIZED) {
    KeepApartmentAlive();
    result = fetch();
  }
  ThrowIfFailed(result);
  if (!factory) throw CallFailure(E_POINTER);
  return factory;
}

}  // namespace Zq::Gantry::Platform::WinRt
