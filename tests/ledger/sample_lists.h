#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace TestSupport {

/// Lists of samples as the collector would and would not write them, by seed: members that repeat,
/// are missing or have another type, nested values, zero bytes in strings, elements that are not
/// objects, malformed times, gaps, powers beyond a float, and texts that end in the middle.
class SampleListGenerator {
 public:
  explicit SampleListGenerator(std::uint32_t seed) : random_(seed) {}

  /// A list of the samples of `date`, "2025-03-30".
  [[nodiscard]] std::string ListOf(const std::string& date);

 private:
  [[nodiscard]] int Below(int end) {
    return static_cast<int>(random_() % static_cast<unsigned>(end));
  }
  /// True once in `times`.
  [[nodiscard]] bool Rarely(int times) { return Below(times) == 0; }
  template <std::size_t count>
  [[nodiscard]] std::string OneOf(const char* const (&texts)[count]) {
    return texts[static_cast<std::size_t>(Below(static_cast<int>(count)))];
  }

  [[nodiscard]] std::string Element();
  [[nodiscard]] std::string TypeMember();
  [[nodiscard]] std::string TimeMember();
  [[nodiscard]] std::string PowerMember();
  void AdvanceTime();

  std::mt19937 random_;
  std::string date_;
  int second_ = 0;  ///< of the day, of the last sample
};

}  // namespace TestSupport
