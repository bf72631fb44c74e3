#pragma once

#include <windows.h>

#include <string>

#include "platform/win32/owners.h"

namespace TestSupport {

/// The path of a program that was built for these tests, such as "one.exe".
[[nodiscard]] std::string SampleProgram(const std::string& name);

/// An ASCII path for calls that take narrow text.
[[nodiscard]] std::string Narrow(const std::wstring& path);

/// The icon of one.exe, 32 by 32 pixels.
[[nodiscard]] Zq::Gantry::Platform::UniqueIcon SampleIcon();

}  // namespace TestSupport
