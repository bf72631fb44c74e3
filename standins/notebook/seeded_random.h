#pragma once

// Stand-in: numbers drawn from a seed.

#include <cstdint>

namespace Standin {

/// The splitmix64 sequence: the same numbers on every platform.
class Random {
 public:
  /// Each combination of seed, period of time (a day or an hour) and purpose has its own sequence.
  Random(std::uint64_t seed, std::int64_t period, std::uint64_t purpose)
      : state_(seed * 0xD1342543DE82EF95ULL + static_cast<std::uint64_t>(period) * 0x9E3779B1ULL +
               purpose * 0xC2B2AE3D27D4EB4FULL) {
    Next();
  }

  std::uint64_t Next() {
    state_ += 0x9E3779B97F4A7C15ULL;
    std::uint64_t z = state_;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
  }
  /// From `lowest` to `highest`, both included.
  std::int64_t Between(std::int64_t lowest, std::int64_t highest) {
    return lowest +
           static_cast<std::int64_t>(Next() % static_cast<std::uint64_t>(highest - lowest + 1));
  }
  bool Chance(std::int64_t percent) { return Between(1, 100) <= percent; }

 private:
  std::uint64_t state_;
};

}  // namespace Standin
