#pragma once

// Stand-in: a seeded model of the use of a notebook, day by day. Portable, and the same on every
// platform and standard library: whole numbers only, and no distributions of the library.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Standin {

/// One sample of the model. `power` is the number's text, in watts; empty for a sample without
/// power.
struct ModelSample {
  std::int64_t offsetSeconds;  // since the day's first second, in elapsed time
  std::string type;
  std::string power;
  std::int64_t clockSeconds = 0;  // by which the notebook's clock is ahead; negative: behind
};

struct ModelDay {
  std::int64_t number;         // days from 1970-01-01 to the local date
  std::int64_t lengthSeconds;  // 86400, or an hour less or more if the clocks change
};

struct ModelSettings {
  std::uint64_t seed;
  std::int64_t periodSeconds;  // from one sample to the next
};

/// Each period of so many days has a week in which the notebook sleeps, and a day on which its
/// clock is set back by minutes or hours, so that times repeat until midnight.
inline constexpr std::int64_t kHabitDays = 56;

/// The day's samples in the order of elapsed time. Nothing for a day on which the notebook sleeps;
/// an empty list for one on which it is awake and measures nothing. Equal arguments give equal
/// samples, so that a day can be made again up to a later time.
[[nodiscard]] std::optional<std::vector<ModelSample>> MakeDay(const ModelSettings& settings,
                                                              const ModelDay& day);

}  // namespace Standin
