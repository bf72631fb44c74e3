#pragma once

#include <cstddef>

#include "security/pattern/translation.h"

namespace Zq::Gantry::Security {

/// Where a match stands at a watch point.
struct MatchPlace {
  WatchPoint point = WatchPoint::kMoved;
  std::size_t position = 0;
  std::size_t textLength = 0;
  std::size_t capturedChars = 0;  ///< of the group that is referred to
};

/// Ends a match that takes too long. What the engine does between two back-tracking points grows
/// with the text, so limiting their number is not enough: the watch adds up the characters passed.
/// They are counted, not timed: the same answer on every machine.
class MatchWatch {
 public:
  explicit MatchWatch(const Translation& translation);

  /// Whether a text of so many characters can be looked at as a whole.
  bool MayBegin(std::size_t characters) const;
  /// Charges for what was done since the last watch point, and for what begins here.
  bool MayGoOn(const MatchPlace& place);

 private:
  std::size_t left_;
  std::size_t pricePerCharacter_;
  std::size_t longestFixedRun_;
  std::size_t mostAlternatives_;
  std::size_t lastPosition_ = 0;
};

}  // namespace Zq::Gantry::Security
