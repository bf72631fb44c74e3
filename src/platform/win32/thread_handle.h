#pragma once

#include <windows.h>

#include <thread>

namespace Zq::Gantry::Platform {

/// The system's handle of a thread object, owned by that object. One body for each toolchain: the
/// standard library's native handle is a Windows handle on one and a posix thread on the other.
HANDLE ThreadHandle(std::thread& thread);

}  // namespace Zq::Gantry::Platform
