#pragma once

#include <windows.h>

#include <activation.h>
#include <inspectable.h>

#include <string_view>

#include "platform/win32/com_owners.h"
#include "platform/winrt/calls.h"

// Making objects of the Windows Runtime, and the apartment that they need. Nothing is logged.
namespace Zq::Gantry::Platform::WinRt {

/// Membership of the calling thread in the multithreaded apartment, for the lifetime of this
/// object, if the thread belongs to none. A thread of another apartment stays in it, and its calls
/// are made from there.
class ApartmentMembership {
 public:
  ApartmentMembership() {
    if (FAILED(membership_.Result())) membership_.GiveUp();
  }

 private:
  ComMembership membership_;
};

/// A new object of a class that can be made without arguments (RoActivateInstance). Throws
/// CallFailure. The calling thread must belong to an apartment.
[[nodiscard]] UniqueInterface<IInspectable> ActivateInstance(std::wstring_view className);

/// The class's factory (RoGetActivationFactory). Throws CallFailure. The calling thread needs no
/// apartment: without one, the multithreaded apartment is kept alive from here on, and the thread
/// does not join it.
[[nodiscard]] UniqueInterface<IActivationFactory> FetchActivationFactory(
    std::wstring_view className);

/// ActivateInstance, and one interface of the new object.
template <typename Interface>
[[nodiscard]] UniqueInterface<Interface> Activate(std::wstring_view className) {
  return FetchInterface<Interface>(*ActivateInstance(className).get());
}

}  // namespace Zq::Gantry::Platform::WinRt
