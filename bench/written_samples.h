#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace Bench {

/// The samples of one day in the collector's form, decrypted: one sensor sample every
/// `secondsApart`, the first at midnight of Monday, 2026-06-01, plus `day` days.
struct WrittenSamples {
  int day = 0;
  std::size_t count = 0;
  std::int64_t secondsApart = 1;
  bool hasPower = true;  ///< otherwise each power is 0
  bool isPadded = true;  ///< otherwise the fields of a time have one digit where that is enough
};

[[nodiscard]] std::string SamplesText(const WrittenSamples& samples);

/// Writes that text. Does nothing if the file exists.
void WriteSamples(const std::filesystem::path& path, const WrittenSamples& samples);

/// "2026-06-01" for day 0.
[[nodiscard]] std::string DateOfDay(int day);

}  // namespace Bench
