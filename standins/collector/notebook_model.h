#pragma once

// Stand-in: a seeded model of how a notebook is used, day by day. Portable, and the same on every
// platform and standard library: whole numbers only, no distributions of the library.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Standin {

/// One sample as the model makes it. `power` is the number's text, in watts; empty for a sample
/// that has none.
struct ModelSample {
  std::int64_t offsetSeconds;  // since the day's first second; real seconds, not the clock's
  std::string type;
  std::string power;
  std::int64_t clockSeconds = 0;  // by which the notebook's clock is ahead; behind below zero
};

struct ModelDay {
  std::int64_t number;         // days from 1970-01-01 to the local date
  std::int64_t lengthSeconds;  // 86400, or an hour less or more where the clocks change
};

struct ModelSettings {
  std::uint64_t seed;
  std::int64_t periodSeconds;  // from one sample to the next
};

/// Each stretch of so many days has a week in which the notebook sleeps and a day on which its
/// clock is put back, by minutes or hours; until midnight the times then repeat.
inline constexpr std::int64_t kHabitDays = 56;

/// The day's samples in the order of real time. Nothing for a day on which the notebook sleeps; no
/// samples for one on which it is awake and measures nothing. Depends on nothing but its arguments,
/// so that a day can be made again up to a later moment.
std::optional<std::vector<ModelSample>> MakeDay(const ModelSettings& settings, const ModelDay& day);

}  // namespace Standin
