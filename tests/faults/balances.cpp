#include "balances.h"

#include <windows.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <utility>

namespace Faults {

namespace {

/// How a result shows that something was acquired; kRelease for a call that releases.
enum class Sign { kNotNull, kNotInvalidHandle, kStatusZero, kHresult, kRelease };

struct Call {
  const char* name;
  Sign sign;
  /// The function that releases what was acquired.
  const char* releasedBy;
};

// Functions whose every success needs one call that releases it. What is passed on to other
// modules, such as texts of COM, is not among them, nor what the handle count of the process shows.
constexpr std::array kCalls{
    Call{"CoInitializeEx", Sign::kHresult, "CoUninitialize"},
    Call{"CoUninitialize", Sign::kRelease, "CoUninitialize"},
    Call{"CommandLineToArgvW", Sign::kNotNull, "LocalFree"},
    Call{"CryptUnprotectData", Sign::kNotNull, "LocalFree"},
    Call{"LocalFree", Sign::kRelease, "LocalFree"},
    Call{"ExtractAssociatedIconExA", Sign::kNotNull, "DestroyIcon"},
    Call{"DestroyIcon", Sign::kRelease, "DestroyIcon"},
    Call{"FindFirstFileW", Sign::kNotInvalidHandle, "FindClose"},
    Call{"FindClose", Sign::kRelease, "FindClose"},
    Call{"GdipCreateBitmapFromHICON", Sign::kStatusZero, "GdipDisposeImage"},
    Call{"GdipDisposeImage", Sign::kRelease, "GdipDisposeImage"},
    Call{"GdiplusStartup", Sign::kStatusZero, "GdiplusShutdown"},
    Call{"GdiplusShutdown", Sign::kRelease, "GdiplusShutdown"},
    Call{"LoadLibraryW", Sign::kNotNull, "FreeLibrary"},
    Call{"FreeLibrary", Sign::kRelease, "FreeLibrary"},
    Call{"RegOpenKeyExW", Sign::kStatusZero, "RegCloseKey"},
    Call{"RegCloseKey", Sign::kRelease, "RegCloseKey"},
    Call{"RoActivateInstance", Sign::kHresult, kActivations},
    Call{"SafeArrayAccessData", Sign::kHresult, "SafeArrayUnaccessData"},
    Call{"SafeArrayUnaccessData", Sign::kRelease, "SafeArrayUnaccessData"},
    Call{"pthread_mutex_lock", Sign::kStatusZero, "pthread_mutex_unlock"},
    Call{"pthread_mutex_unlock", Sign::kRelease, "pthread_mutex_unlock"},
};

/// Eight arguments, which is as many as any of these calls has; those beyond its own are ignored.
using AnyFunction = std::uint64_t (*)(std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t,
                                      std::uint64_t, std::uint64_t, std::uint64_t, std::uint64_t);

std::array<AnyFunction, kCalls.size()> targets{};
std::array<std::atomic<long>, kCalls.size()> counts{};

bool Succeeded(Sign sign, std::uint64_t result) {
  switch (sign) {
    case Sign::kNotNull:
      return result != 0;
    case Sign::kNotInvalidHandle:
      return result != 0xFFFFFFFFFFFFFFFF;
    case Sign::kStatusZero:
      return static_cast<std::uint32_t>(result) == 0;
    case Sign::kHresult:
      return static_cast<std::int32_t>(result) >= 0;
    case Sign::kRelease:
      return true;
  }
  return false;
}

template <std::size_t kIndex>
std::uint64_t Count(std::uint64_t a, std::uint64_t b, std::uint64_t c, std::uint64_t d,
                    std::uint64_t e, std::uint64_t f, std::uint64_t g, std::uint64_t h) {
  const std::uint64_t result = targets[kIndex](a, b, c, d, e, f, g, h);
  if (Succeeded(kCalls[kIndex].sign, result)) ++counts[kIndex];
  return result;
}

template <std::size_t... kIndices>
constexpr std::array<AnyFunction, kCalls.size()> Counters(std::index_sequence<kIndices...>) {
  return {&Count<kIndices>...};
}

}  // namespace

void CountResources(FaultPoints& points) {
  constexpr auto kCounters = Counters(std::make_index_sequence<kCalls.size()>());
  for (std::size_t i = 0; i < kCalls.size(); ++i) {
    counts[i] = 0;
    void* const target = points.Target(kCalls[i].name);
    if (target == nullptr) continue;
    targets[i] = reinterpret_cast<AnyFunction>(target);
    points.SetTarget(kCalls[i].name, reinterpret_cast<void*>(kCounters[i]));
  }
}

std::map<std::string, long> UnreleasedResources() {
  std::map<std::string, long> unreleased;
  for (std::size_t i = 0; i < kCalls.size(); ++i) {
    const long count = counts[i];
    unreleased[kCalls[i].releasedBy] += kCalls[i].sign == Sign::kRelease ? -count : count;
  }
  return unreleased;
}

}  // namespace Faults
