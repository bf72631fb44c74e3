#pragma once

#include <cstddef>
#include <string_view>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Follows a JSON text through its strings and numbers and finds the first string or exponent that
/// is longer than its limit (json_limits.h).
class JsonTextGuard {
 public:
  /// The number of bytes of the next part of the text that come before the end of the text or
  /// before what breaks a limit: the whole part for most. The text ends at its first zero byte.
  [[nodiscard]] std::size_t Accept(std::string_view part);

  /// Whether a limit was broken. Accept must not be called again then.
  [[nodiscard]] bool HasBrokenLimit() const { return hasBrokenLimit_; }

 private:
  // Each processes a character outside of strings, or inside. False if the text ends before it.
  [[nodiscard]] bool AcceptOutside(char c);
  [[nodiscard]] bool AcceptInside(char c);
  [[nodiscard]] bool Break();

  std::size_t stringBytes_ = 0;
  int exponentDigits_ = 0;
  bool isInString_ = false;
  bool isEscaped_ = false;
  bool isInExponent_ = false;
  bool hasBrokenLimit_ = false;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
