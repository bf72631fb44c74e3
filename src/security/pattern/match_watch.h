#pragma once

#include <cstddef>

#include "security/pattern/translation.h"

namespace Zq::Gantry::Security {

/// The state of a match at a watch point. Lengths and positions are in 16-bit units.
struct MatchPlace {
  WatchPoint point = WatchPoint::kMoved;
  std::size_t position = 0;       ///< current position in the text
  std::size_t textLength = 0;     ///< of the whole text
  std::size_t capturedChars = 0;  ///< of the group that is referred to
};

/// Ends a match that takes too long. The work of the engine between two backtracking points grows
/// with the text, so limiting their number is not enough: the watch adds up the characters passed,
/// in both directions, and compares the sum with a fixed budget. They are counted, not timed, so
/// the answer is the same on every machine. One watch for one match, on one thread. Nothing is
/// thrown.
class MatchWatch {
 public:
  /// Reads the prices from the translation of the expression, which is not kept.
  explicit MatchWatch(const Translation& translation);

  /// Whether the budget is enough to pass a text of this length once.
  [[nodiscard]] bool MayBegin(std::size_t characters) const;
  /// Charges for the work since the last watch point and for the work that begins here. False if
  /// the budget is not enough; the match must end then.
  [[nodiscard]] bool MayGoOn(const MatchPlace& place);

 private:
  std::size_t left_;  ///< of the budget
  std::size_t pricePerCharacter_;
  std::size_t longestFixedRun_;
  std::size_t mostAlternatives_;
  std::size_t lastPosition_ = 0;
};

}  // namespace Zq::Gantry::Security
