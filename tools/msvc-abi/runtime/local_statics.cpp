// Local static objects are constructed once, by the first thread that comes. The compiled code
// compares epochs so that it need not call after that.

#include <windows.h>

namespace {

constexpr int kNotBegun = 0;
constexpr int kInProgress = -1;
constexpr int kFirstEpoch = static_cast<int>(0x80000000U);

SRWLOCK lock = SRWLOCK_INIT;
CONDITION_VARIABLE ended = CONDITION_VARIABLE_INIT;

}  // namespace

extern "C" {

int _Init_global_epoch = kFirstEpoch;
__declspec(thread) int _Init_thread_epoch = kFirstEpoch;

/// Leaves `once` at kInProgress if the caller is to construct the object.
void __cdecl _Init_thread_header(int* once) {
  AcquireSRWLockExclusive(&lock);
  while (*once == kInProgress) SleepConditionVariableSRW(&ended, &lock, INFINITE, 0);
  if (*once == kNotBegun) {
    *once = kInProgress;
  } else {
    _Init_thread_epoch = _Init_global_epoch;
  }
  ReleaseSRWLockExclusive(&lock);
}

void __cdecl _Init_thread_footer(int* once) {
  AcquireSRWLockExclusive(&lock);
  *once = ++_Init_global_epoch;
  _Init_thread_epoch = _Init_global_epoch;
  ReleaseSRWLockExclusive(&lock);
  WakeAllConditionVariable(&ended);
}

/// The constructor threw: the next thread tries again.
void __cdecl _Init_thread_abort(int* once) {
  AcquireSRWLockExclusive(&lock);
  *once = kNotBegun;
  ReleaseSRWLockExclusive(&lock);
  WakeAllConditionVariable(&ended);
}

}  // extern "C"
