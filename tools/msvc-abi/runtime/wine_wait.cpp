// Waits of condition variables for a limited time. The standard library waits with its own layout
// of a mutex and a condition variable, which are Wine's own objects here.

#include <__msvc_threads_core.hpp>
#include <chrono>

extern "C" {

__declspec(dllimport) _Thrd_result __cdecl _Cnd_timedwait(_Cnd_t, _Mtx_t, const _timespec64*);

_Thrd_result __stdcall _Cnd_timedwait_for_unchecked(const _Cnd_t condition, const _Mtx_t mutex,
                                                    const unsigned int milliseconds) noexcept {
  using namespace std::chrono;
  const nanoseconds end =
      system_clock::now().time_since_epoch() + std::chrono::milliseconds(milliseconds);
  const auto endSeconds = duration_cast<seconds>(end);
  const _timespec64 until{endSeconds.count(), static_cast<long>((end - endSeconds).count())};
  return _Cnd_timedwait(condition, mutex, &until);
}

}  // extern "C"
