#pragma once

#include <windows.h>

#include <inspectable.h>

#include <string_view>

#include "platform/winrt/calls.h"

namespace Zq::Gantry::Platform::WinRt {

/// A new object of the class, which can be made without arguments; raises CallFailure where it
/// cannot. The calling thread belongs to an apartment.
UniqueInterface<IInspectable> ActivateInstance(std::wstring_view className);

template <typename Interface>
UniqueInterface<Interface> Activate(std::wstring_view className) {
  return FetchInterface<Interface>(*ActivateInstance(className).get());
}

}  // namespace Zq::Gantry::Platform::WinRt
