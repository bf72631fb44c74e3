#include "security/pattern/match_watch.h"

#include <gtest/gtest.h>

namespace Zq::Gantry::Security {
namespace {

constexpr std::size_t kAll = 200'000'000;
constexpr std::size_t kCall = 8;

/// The charge of a watch at `place`, found by the longest move that it still allows afterwards.
std::size_t SpentAt(const Translation& translation, const MatchPlace& place) {
  MatchWatch first(translation);
  EXPECT_TRUE(first.MayGoOn(place));
  std::size_t allowed = 0;
  std::size_t refused = kAll;
  while (refused - allowed > 1) {
    const std::size_t middle = allowed + (refused - allowed) / 2;
    MatchWatch watch = first;
    const bool mayGoOn = watch.MayGoOn({WatchPoint::kMoved, place.position + middle, 2 * kAll});
    (mayGoOn ? allowed : refused) = middle;
  }
  return kAll - kCall - allowed;
}

TEST(MatchWatch, ChargesForMovesInBothDirections) {
  EXPECT_EQ(SpentAt({}, {WatchPoint::kMoved, 0, 1000}), kCall);
  EXPECT_EQ(SpentAt({}, {WatchPoint::kMoved, 1000, 1000}), kCall + 1000);
  MatchWatch watch({});
  EXPECT_TRUE(watch.MayGoOn({WatchPoint::kMoved, kAll / 2 - kCall, kAll}));
  EXPECT_TRUE(watch.MayGoOn({WatchPoint::kMoved, 0, kAll}));
  EXPECT_FALSE(watch.MayGoOn({WatchPoint::kMoved, 0, kAll}));
}

TEST(MatchWatch, ChargesForRunsChoicesAndRepeatedReferences) {
  Translation translation;
  translation.longestFixedRun = 300;
  translation.mostAlternatives = 70;
  EXPECT_EQ(SpentAt(translation, {WatchPoint::kMoved, 0, 1000}), kCall);
  EXPECT_EQ(SpentAt(translation, {WatchPoint::kFixedRun, 0, 1000}), kCall + 300);
  EXPECT_EQ(SpentAt(translation, {WatchPoint::kChoice, 0, 1000}), kCall + 35);
  EXPECT_EQ(SpentAt(translation, {WatchPoint::kRepeatedReference, 200, 1000}),
            kCall + 200 + 800 + 300);
}

TEST(MatchWatch, ChargesAReferenceForTheCharactersCompared) {
  EXPECT_EQ(SpentAt({}, {WatchPoint::kReference, 200, 1000, 800}), kCall + 200 + 100);
  EXPECT_EQ(SpentAt({}, {WatchPoint::kReference, 200, 1000, 801}), kCall + 200);
}

TEST(MatchWatch, ChargesMorePerCharacterForAClassOfManyRanges) {
  Translation translation;
  translation.mostWideRanges = 11;
  EXPECT_EQ(MatchWatch({}).MayBegin(kAll), true);
  EXPECT_EQ(MatchWatch({}).MayBegin(kAll + 1), false);
  EXPECT_EQ(MatchWatch(translation).MayBegin(kAll / 3), true);
  EXPECT_EQ(MatchWatch(translation).MayBegin(kAll / 3 + 1), false);
  MatchWatch watch(translation);
  EXPECT_TRUE(watch.MayGoOn({WatchPoint::kMoved, (kAll - kCall) / 3, kAll}));
  EXPECT_FALSE(watch.MayGoOn({WatchPoint::kMoved, (kAll - kCall) / 3, kAll}));
}

}  // namespace
}  // namespace Zq::Gantry::Security
