#include "security/pattern/match_watch.h"

#include <algorithm>

namespace Zq::Gantry::Security {

namespace {

/// The budget: characters passed, for classes without ranges beyond U+00FF.
constexpr std::size_t kMostCharactersPassed = 200'000'000;
/// The price of calling the watch, in characters passed.
constexpr std::size_t kCall = 8;

/// The engine searches the ranges of a class one after the other. So many ranges cost as much as
/// one more character.
constexpr std::size_t kRangesForOneMore = 4;

/// When the engine leaves a group, it passes over the remaining alternatives. So many cost as much
/// as one character.
constexpr std::size_t kAlternativesForOneCharacter = 2;

/// Comparing so many characters with a captured text costs as much as passing one.
constexpr std::size_t kComparedForOneCharacter = 8;

}  // namespace

MatchWatch::MatchWatch(const Translation& translation)
    : left_(kMostCharactersPassed),
      pricePerCharacter_(1 + translation.mostWideRanges / kRangesForOneMore),
      longestFixedRun_(translation.longestFixedRun),
      mostAlternatives_(translation.mostAlternatives) {}

bool MatchWatch::MayBegin(std::size_t characters) const {
  return characters <= left_ / pricePerCharacter_;
}

bool MatchWatch::MayGoOn(const MatchPlace& place) {
  std::size_t passed = place.position > lastPosition_ ? place.position - lastPosition_
                                                      : lastPosition_ - place.position;
  lastPosition_ = place.position;
  const std::size_t ahead = place.textLength - place.position;
  switch (place.point) {
    case WatchPoint::kMoved:
      break;
    case WatchPoint::kFixedRun:
      passed += longestFixedRun_;
      break;
    case WatchPoint::kChoice:
      passed += mostAlternatives_ / kAlternativesForOneCharacter;
      break;
    case WatchPoint::kRepeatedReference:
      passed += ahead + longestFixedRun_;
      break;
    case WatchPoint::kReference:
      // The engine compares nothing if the captured text is longer than the rest of the text.
      if (place.capturedChars <= ahead) passed += place.capturedChars / kComparedForOneCharacter;
      break;
  }
  const std::size_t price = kCall + passed * pricePerCharacter_;
  if (price > left_) return false;
  left_ -= price;
  return true;
}

}  // namespace Zq::Gantry::Security
