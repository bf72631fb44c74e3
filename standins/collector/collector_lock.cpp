// Stand-in: a lock that a thread of the collector never lets go.

#include "collector_lock.h"

#include <windows.h>

#include <latch>
#include <mutex>
#include <thread>

namespace Standin {

namespace {

/// Never destroyed: its thread holds it until the process ends.
std::mutex& Lock() {
  static std::mutex& lock = *new std::mutex;
  return lock;
}

}  // namespace

void HoldLockForEver() {
  std::latch taken(1);
  std::thread([&taken] {
    Lock().lock();
    taken.count_down();
    Sleep(INFINITE);
  }).detach();
  taken.wait();
}

void PassThroughLock() { const std::lock_guard guard(Lock()); }

}  // namespace Standin
