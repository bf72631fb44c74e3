#pragma once

// Stand-in: one day's samples, and the files that hold them.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "calendar_days.h"
#include "notebook_model.h"

namespace Standin {

/// One sample, each member as in the file. `power` is empty if the sample has none.
struct WrittenSample {
  std::string type;
  std::string time;
  std::string power;
};

/// The samples that the model takes on a day up to `now`. Nothing for a day without a file.
[[nodiscard]] std::optional<std::vector<WrittenSample>> TakeSamples(const ModelSettings& settings,
                                                                    const CalendarDay& day,
                                                                    std::int64_t now);

/// The encrypted file of the samples. Throws std::runtime_error if they cannot be protected.
[[nodiscard]] std::string SampleFileBytes(const std::vector<WrittenSample>& samples);

/// The plain text of several days, by date, for tests.
[[nodiscard]] std::string TruthText(const std::map<std::string, std::vector<WrittenSample>>& days);

}  // namespace Standin
