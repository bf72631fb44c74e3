#include "platform/win32/thread_handle.h"

#include <pthread.h>

namespace Zq::Gantry::Platform {

HANDLE ThreadHandle(std::thread& thread) {
  return static_cast<HANDLE>(pthread_gethandle(thread.native_handle()));
}

}  // namespace Zq::Gantry::Platform
