#include "ledger/recent_samples.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "base/scratch_folder.h"
#include "base/wide_file.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// What is read of a file with this text, as if it were `length` bytes long.
RecentSamples::Samples Read(const RecentSamples& recent, const std::string& text,
                            std::size_t length) {
  const TestSupport::ScratchFolder folder;
  const std::filesystem::path path = folder.File("samples.json");
  TestSupport::WriteBytes(path, text);
  const UniqueFile file = OpenForReading(path.wstring());
  return recent.Read(file.get(), length);
}

/// "nothing" if the text is not kept.
std::string Found(const RecentSamples& recent, const std::string& encrypted) {
  const RecentSamples::Samples samples = Read(recent, encrypted, encrypted.size());
  EXPECT_EQ(samples.encrypted, samples.plainCopy != nullptr ? "" : encrypted);
  return samples.plainCopy != nullptr ? *samples.plainCopy : "nothing";
}

/// Of several pieces.
std::string LongText() { return std::string(200'000, 'A'); }

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

TEST(RecentSamples, ReadsTheWholeTextThatDiffersInOneByte) {
  std::mt19937 random(1);
  const std::string kept = LongText();
  RecentSamples recent;
  recent.Keep(kept, "1");
  for (const std::size_t place : {0U, 1U, 65'535U, 65'536U, 131'071U, 131'072U, 199'999U}) {
    std::string other = kept;
    other[place] = 'B';
    for (std::size_t i = place + 1; i < other.size(); ++i) {
      other[i] = static_cast<char>('a' + random() % 26);
    }
    EXPECT_EQ(Found(recent, other), "nothing") << place;
  }
  EXPECT_EQ(Found(recent, kept), "1");
}

TEST(RecentSamples, FindsEachOfThreeTextsThatDifferInTheirLastPiece) {
  RecentSamples recent;
  std::string text = LongText();
  for (const char last : {'1', '2', '3'}) {
    text.back() = last;
    recent.Keep(text, std::string(1, last));
  }
  for (const char last : {'3', '1', '2'}) {
    text.back() = last;
    EXPECT_EQ(Found(recent, text), std::string(1, last));
  }
  text.back() = '4';
  EXPECT_EQ(Found(recent, text), "nothing");
}

TEST(RecentSamples, ReadsNothingOfAFileThatIsShorterThanExpected) {
  RecentSamples recent;
  recent.Keep(LongText(), "1");
  for (const std::size_t length : {LongText().size(), LongText().size() + 1}) {
    const RecentSamples::Samples samples = Read(recent, LongText().substr(1), length);
    EXPECT_EQ(samples.encrypted, "");
    EXPECT_EQ(samples.plainCopy, nullptr);
  }
  std::string other = LongText().substr(1);
  other[100'000] = 'B';
  EXPECT_EQ(Read(recent, other, LongText().size()).encrypted, "");
}
