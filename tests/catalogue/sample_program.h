#pragma once

#include <windows.h>

#include <string>

#include "platform/win32/owners.h"

namespace TestSupport {

/// The path of a program that was built for these tests, such as "one.exe".
std::string SampleProgram(const std::string& name);

/// A path of ASCII letters for the calls that take narrow text.
std::string Narrow(const std::wstring& path);

/// The icon of one.exe in 32 pixels.
Zq::Gantry::Platform::UniqueIcon SampleIcon();

}  // namespace TestSupport
