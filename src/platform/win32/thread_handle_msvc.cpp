#include "platform/win32/thread_handle.h"

namespace Zq::Gantry::Platform {

HANDLE ThreadHandle(std::thread& thread) { return thread.native_handle(); }

}  // namespace Zq::Gantry::Platform
