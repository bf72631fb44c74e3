#pragma once

#include <windows.h>

#include <hstring.h>
#include <winstring.h>

#include <string>
#include <string_view>

#include "platform/win32/owners.h"

namespace Zq::Gantry::Platform::WinRt {

/// The runtime's immutable text; null is the empty one.
struct HStringPolicy {
  using Type = HSTRING;
  static Type Empty() { return nullptr; }
  static void Release(Type text) {
    const LastErrorKeeper keeper;
    WindowsDeleteString(text);
  }
};
using UniqueHString = UniqueResource<HStringPolicy>;

/// A copy of `text`; raises CallFailure where it cannot be made.
UniqueHString MakeHString(std::wstring_view text);

/// The characters of `text`, embedded zeros included.
std::wstring TextOf(HSTRING text);

}  // namespace Zq::Gantry::Platform::WinRt
