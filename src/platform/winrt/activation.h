#pragma once

#include <windows.h>

#include <activation.h>
#include <inspectable.h>

#include <string_view>

#include "platform/winrt/calls.h"

namespace Zq::Gantry::Platform::WinRt {

/// A new object of the class, which can be made without arguments; raises CallFailure where it
/// cannot. The calling thread belongs to an apartment.
UniqueInterface<IInspectable> ActivateInstance(std::wstring_view className);

/// The class's factory; raises CallFailure where there is none. The calling thread may belong to no
/// apartment: then the multithreaded one is kept alive from here on, without the thread joining it.
UniqueInterface<IActivationFactory> FetchActivationFactory(std::wstring_view className);

template <typename Interface>
UniqueInterface<Interface> Activate(std::wstring_view className) {
  return FetchInterface<Interface>(*ActivateInstance(className).get());
}

}  // namespace Zq::Gantry::Platform::WinRt
