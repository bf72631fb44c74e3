#pragma once

#include <cstdint>
#include <string>

namespace TestSupport {

/// Reports and stores with the oddities that others may put into them: repeated and missing
/// members, other types, malformed times, times that the clocks skip or repeat, zeros and bytes
/// that are not UTF-8 in names, and energies beyond 32 and 64 bits. One seed gives one text.
class GeneratedReports {
 public:
  explicit GeneratedReports(std::uint32_t seed) : state_(seed) {}

  /// A number below `end`.
  [[nodiscard]] std::uint32_t Below(std::uint32_t end);

  /// Some are not XML.
  [[nodiscard]] std::string Report();
  /// Some are not JSON, and some are no array.
  [[nodiscard]] std::string Store();

 private:
  [[nodiscard]] bool OneIn(std::uint32_t count) { return Below(count) == 0; }
  template <typename Texts>
  [[nodiscard]] std::string OneOf(const Texts& texts);
  [[nodiscard]] std::string Time();
  [[nodiscard]] std::string Energy();
  [[nodiscard]] std::string ReportRow();
  [[nodiscard]] std::string StoreRow();
  [[nodiscard]] std::string Member(std::uint32_t member);

  std::uint32_t state_;
};

}  // namespace TestSupport
