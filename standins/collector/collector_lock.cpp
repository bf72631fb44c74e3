// Stand-in: a lock that a thread of the collector never lets go.

#include "collector_lock.h"

#include <windows.h>

#include <future>
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
  std::promise<void> taken;
  const std::future<void> isTaken = taken.get_future();
  std::thread([taken = std::move(taken)]() mutable {
    Lock().lock();
    taken.set_value();
    Sleep(INFINITE);
  }).detach();
  isTaken.wait();
}

void PassThroughLock() { const std::lock_guard guard(Lock()); }

}  // namespace Standin
