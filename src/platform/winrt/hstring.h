#pragma once

#include <windows.h>

#include <hstring.h>
#include <winstring.h>

#include <string>
#include <string_view>

#include "platform/winrt/unique_hstring.h"

namespace Zq::Gantry::Platform::WinRt {

/// A copy of `text`; raises CallFailure where it cannot be made.
UniqueHString MakeHString(std::wstring_view text);

/// The characters of `text`, embedded zeros included.
std::wstring TextOf(HSTRING text);

}  // namespace Zq::Gantry::Platform::WinRt
