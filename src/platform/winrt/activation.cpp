#include "platform/winrt/activation.h"

#include <roapi.h>

namespace Zq::Gantry::Platform::WinRt {

UniqueInterface<IInspectable> ActivateInstance(std::wstring_view className) {
  const UniqueHString name = MakeHString(className);
  UniqueInterface<IInspectable> object;
  RaiseIfFailed(RoActivateInstance(name.get(), object.out()));
  if (!object) throw CallFailure(E_POINTER);
  return object;
}

}  // namespace Zq::Gantry::Platform::WinRt
