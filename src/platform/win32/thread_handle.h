#pragma once

#include <windows.h>

#include <thread>

// A seam between the toolchains: thread_handle_mingw.cpp has the body for the C++ library over
// POSIX threads, whose native handle is not a Windows handle, thread_handle_msvc.cpp the other.
namespace Zq::Gantry::Platform {

/// The system's handle of a running thread, for calls such as SetThreadPriority. It belongs to
/// `thread` and is valid until that is joined or detached. The caller does not close it.
[[nodiscard]] HANDLE ThreadHandle(std::thread& thread);

}  // namespace Zq::Gantry::Platform
