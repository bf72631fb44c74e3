#pragma once

#include <windows.h>

#include <functional>
#include <utility>

#include "platform/win32/owners.h"

namespace TestSupport {

namespace SmallStackInside {

struct Task {
  std::function<void()> call;
  bool isFinished = false;
};

/// Wine creates no stack below 1 MB: this occupies half of it.
inline void CallBelowHalfAMegabyte(Task& task) {
  volatile char taken[512 * 1024];
  taken[0] = 1;
  taken[sizeof(taken) - 1] = taken[0];
  task.call();
  task.isFinished = taken[sizeof(taken) - 1] == 1;
}

inline DWORD WINAPI Run(void* task) {
  CallBelowHalfAMegabyte(*static_cast<Task*>(task));
  return 0;
}

}  // namespace SmallStackInside

/// Whether `call` returns on a thread with half a megabyte of stack left, as a thread of a host may
/// have. Under Wine a stack overflow silently ends only the thread.
[[nodiscard]] inline bool FinishesOnASmallStack(std::function<void()> call) {
  SmallStackInside::Task task{std::move(call)};
  const Zq::Gantry::Platform::UniqueHandle thread(
      CreateThread(nullptr, 1024 * 1024, SmallStackInside::Run, &task,
                   STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
  if (!thread) return false;
  WaitForSingleObject(thread.get(), INFINITE);
  return task.isFinished;
}

}  // namespace TestSupport
