#include "ledger/recent_samples.h"

#include <gtest/gtest.h>

#include <string>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// "nothing" if the text is not kept.
std::string Found(const RecentSamples& recent, const std::string& encrypted) {
  const std::string* plainCopy = recent.Find(encrypted);
  return plainCopy != nullptr ? *plainCopy : "nothing";
}

}  // namespace

TEST(RecentSamples, FindsTheCopyOfExactlyTheSameText) {
  RecentSamples recent;
  EXPECT_EQ(Found(recent, "AAAA"), "nothing");
  recent.Keep("AAAA", "[1]");
  EXPECT_EQ(Found(recent, "AAAA"), "[1]");
  for (const char* other : {"", "AAA", "AAAB", "AAAAA", "aaaa", "AAAA "}) {
    EXPECT_EQ(Found(recent, other), "nothing") << other;
  }
}

TEST(RecentSamples, ComparesTextsBeyondAZeroByte) {
  RecentSamples recent;
  recent.Keep(std::string("AA\0A", 4), "[1]");
  EXPECT_EQ(Found(recent, std::string("AA\0A", 4)), "[1]");
  EXPECT_EQ(Found(recent, std::string("AA\0B", 4)), "nothing");
}

TEST(RecentSamples, KeepsTheThreeFilesThatWereDecryptedLast) {
  RecentSamples recent;
  recent.Keep("A", "1");
  recent.Keep("B", "2");
  recent.Keep("C", "3");
  EXPECT_EQ(Found(recent, "A"), "1");
  recent.Keep("D", "4");
  EXPECT_EQ(Found(recent, "A"), "nothing");
  EXPECT_EQ(Found(recent, "B"), "2");
  EXPECT_EQ(Found(recent, "C"), "3");
  EXPECT_EQ(Found(recent, "D"), "4");
  recent.Keep("E", "5");
  EXPECT_EQ(Found(recent, "B"), "nothing");
}

TEST(RecentSamples, KeepsThreeTextsOf4Mebibytes) {
  RecentSamples recent;
  const std::string longest(4'194'304, 'A');
  recent.Keep(longest, "1");
  recent.Keep(std::string(4'194'304, 'C'), "2");
  recent.Keep(std::string(4'194'304, 'B'), "3");
  EXPECT_EQ(Found(recent, longest), "1");
  EXPECT_EQ(Found(recent, std::string(4'194'304, 'C')), "2");
  EXPECT_EQ(Found(recent, std::string(4'194'304, 'B')), "3");
}

TEST(RecentSamples, KeepsOneLongerText) {
  RecentSamples recent;
  const std::string one(4'194'305, 'A');
  const std::string other(4'194'305, 'B');
  recent.Keep("C", "3");
  recent.Keep(one, "1");
  EXPECT_EQ(Found(recent, one), "1");
  recent.Keep(other, "2");
  EXPECT_EQ(Found(recent, one), "nothing");
  EXPECT_EQ(Found(recent, other), "2");
  recent.Keep("D", "4");
  EXPECT_EQ(Found(recent, "C"), "3") << "the first long text has left its place";
  EXPECT_EQ(Found(recent, other), "2");
}
