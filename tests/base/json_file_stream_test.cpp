// The stream that looks at buffers instead of characters, and that it decides like the one that
// looks at characters.
#include "base/json_file_stream.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

#include "base/json_oracle.h"
#include "base/scratch_folder.h"
#include "base/wide_file.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::DocumentByCharacters;
using TestSupport::ScratchFolder;

namespace {

constexpr std::size_t kBufferBytes = 65536;

class JsonFileStreamTest : public testing::Test {
 protected:
  void Write(const std::string& text) { TestSupport::WriteBytes(folder_.File("text.json"), text); }
  [[nodiscard]] std::wstring Path() const { return folder_.File("text.json").wstring(); }

  /// Reads the whole text, ending a value after each `valueBytes` characters.
  struct Reading {
    std::string text;
    bool needsCare;
    bool refused;
  };
  Reading Read(const std::string& text, std::size_t limitBytes = 64U << 20,
               std::size_t valueBytes = 1, JsonCheck check = JsonCheck::kQuick) {
    Write(text);
    const UniqueFile file = OpenForReading(Path());
    JsonFileStream stream(file.get(), limitBytes, check);
    std::string read;
    bool isCounted = true;
    while (stream.Peek() != '\0') {
      isCounted = isCounted && stream.Tell() == read.size();
      read += stream.Take();
      if (read.size() % valueBytes == 0) stream.EndValue();
    }
    EXPECT_TRUE(isCounted);
    EXPECT_EQ(stream.Take(), '\0');
    return {read, stream.NeedsCare(), stream.Refused()};
  }

  bool NeedsCare(const std::string& text) { return Read(text).needsCare; }
  Reading ReadExactly(const std::string& text) {
    return Read(text, 64U << 20, 1, JsonCheck::kExact);
  }

 private:
  ScratchFolder folder_;
};

/// Blanks, so that `text` begins `bytes` before the end of the first buffer.
std::string AcrossBuffers(std::size_t bytes, const std::string& text) {
  return std::string(kBufferBytes - bytes, ' ') + text;
}

}  // namespace

TEST_F(JsonFileStreamTest, PassesOnTheCharactersOfAllBuffers) {
  for (const std::size_t length : {std::size_t{0}, std::size_t{1}, kBufferBytes - 1, kBufferBytes,
                                   kBufferBytes + 1, 2 * kBufferBytes, 3 * kBufferBytes + 7}) {
    std::string text;
    for (std::size_t i = 0; i < length; ++i) text += static_cast<char>('A' + i % 7);
    const Reading reading = Read(text);
    EXPECT_TRUE(reading.text == text) << length;
    EXPECT_FALSE(reading.needsCare || reading.refused) << length;
  }
}

TEST_F(JsonFileStreamTest, NeedsCareForAnExponentOfTenDigits) {
  for (const char* text : {"1e1234567890", "1E1234567890", "1e+1234567890", "1e-1234567890",
                           "[12345,1E-0000000001]", "\"e1234567890\"", "1e12345678901234567890"}) {
    EXPECT_TRUE(NeedsCare(text)) << text;
  }
}

TEST_F(JsonFileStreamTest, NeedsNoCareForOtherDigits) {
  for (const char* text :
       {"1e123456789", "1e-123456789", "12345678901234567890", "-12345678901234567890",
        "0.12345678901234567890", "a-1234567890", "+1234567890", "1234567890e1", "1e 1234567890",
        "1e--1234567890", "\"2026-11-14T02:10:46\""}) {
    EXPECT_FALSE(NeedsCare(text)) << text;
  }
}

TEST_F(JsonFileStreamTest, FindsALongExponentAtEveryPlace) {
  for (std::size_t blanks = 0; blanks < 25; ++blanks) {
    const std::string before(blanks, ' ');
    EXPECT_TRUE(NeedsCare(before + "1e1234567890")) << blanks;
    EXPECT_TRUE(NeedsCare(before + "12345678901234567890 1e1234567890")) << blanks;
    EXPECT_FALSE(NeedsCare(before + "1e123456789,1e987654321")) << blanks;
  }
}

TEST_F(JsonFileStreamTest, FindsALongExponentAcrossTwoBuffers) {
  const std::string exponent = "1e-1234567890,";
  for (std::size_t bytes = 0; bytes <= exponent.size(); ++bytes) {
    EXPECT_TRUE(NeedsCare(AcrossBuffers(bytes, exponent + "1"))) << bytes;
    EXPECT_FALSE(NeedsCare(AcrossBuffers(bytes, "1e-123456789,1"))) << bytes;
  }
}

TEST_F(JsonFileStreamTest, EndsTheTextBeforeTheBufferThatNeedsCare) {
  const Reading reading = Read(AcrossBuffers(1, "1,1e1234567890"));
  EXPECT_EQ(reading.text.size(), kBufferBytes);
  EXPECT_TRUE(reading.needsCare);
}

TEST_F(JsonFileStreamTest, NeedsCareOnceTwoMebibytesHoldNoValue) {
  const std::size_t most = 2U << 20;
  EXPECT_FALSE(Read(std::string(most, 'a'), 64U << 20, most).needsCare);
  EXPECT_TRUE(Read(std::string(most + 1, 'a'), 64U << 20, most + 1).needsCare);
  EXPECT_FALSE(Read(std::string(3 * most, 'a'), 64U << 20, most / 2).needsCare);
}

TEST_F(JsonFileStreamTest, CutsTheTextOffBeforeTheTenthDigitOfAnExponent) {
  EXPECT_EQ(ReadExactly("[1e-1234567890]").text, "[1e-123456789");
  EXPECT_TRUE(ReadExactly("[1e-1234567890]").refused);
  for (std::size_t bytes = 0; bytes <= 16; ++bytes) {
    const Reading reading = ReadExactly(AcrossBuffers(bytes, "1E+0000000001,1"));
    EXPECT_EQ(reading.text.size(), kBufferBytes - bytes + 12) << bytes;
    EXPECT_TRUE(reading.refused) << bytes;
  }
}

TEST_F(JsonFileStreamTest, FollowsStringsExactly) {
  for (const char* text : {R"(["e1234567890"])", R"({"\"e1234567890":"\\","e":1e123456789})",
                           "[1e5,1234567890,2e+1,-1234567890]"}) {
    const Reading reading = ReadExactly(text);
    EXPECT_EQ(reading.text, text);
    EXPECT_FALSE(reading.refused || reading.needsCare) << text;
  }
  EXPECT_EQ(ReadExactly(R"(["\\",1e1234567890])").text, R"(["\\",1e123456789)");
}

TEST_F(JsonFileStreamTest, EndsAnExactTextAtAZeroByte) {
  const Reading reading = ReadExactly(std::string("[1]\0 1e1234567890", 17));
  EXPECT_EQ(reading.text, "[1]");
  EXPECT_FALSE(reading.refused);
}

TEST_F(JsonFileStreamTest, CutsAStringOffAfter16Mebibytes) {
  const std::size_t most = 16U << 20;
  EXPECT_FALSE(ReadExactly('"' + std::string(most, 'a') + '"').refused);
  const Reading reading = ReadExactly('"' + std::string(most + 1, 'a') + '"');
  EXPECT_TRUE(reading.refused);
  EXPECT_EQ(reading.text.size(), 1 + most);
}

TEST_F(JsonFileStreamTest, RefusesMoreBytesThanItsLimit) {
  EXPECT_TRUE(Read("[1,2,3]", 6, 1, JsonCheck::kExact).refused);
  EXPECT_FALSE(Read("[1,2,3]", 7).refused);
  EXPECT_TRUE(Read("[1,2,3]", 6).refused);
  EXPECT_EQ(Read("[1,2,3]", 6).text, "");
  EXPECT_FALSE(Read(std::string(2 * kBufferBytes, 'a'), 2 * kBufferBytes).refused);
  EXPECT_TRUE(Read(std::string(2 * kBufferBytes + 1, 'a'), 2 * kBufferBytes).refused);
}

// 300 texts, each with its end, a string, a number or an exponent near the border of two buffers.
TEST_F(JsonFileStreamTest, DecidesLikeTheStreamThatLooksAtEachCharacter) {
  const std::array<std::string, 12> parts{"1e1234567890",
                                          "\"e1234567890\"",
                                          "\"a\\\"e-0000000001\"",
                                          "0.0000000001e-2147483639",
                                          "1e-123456789",
                                          "12345678901234567890",
                                          "\"\\\\\"",
                                          "{\"e1\":1E5}",
                                          "[1.5e+0000000001]",
                                          "\"\\u0041\"",
                                          "-0.1e-9999999999",
                                          "\"x\""};
  std::mt19937 random(7);
  int unreadable = 0;
  for (int round = 0; round < 300; ++round) {
    std::string text = "[" + std::string(kBufferBytes - 1 - random() % 40, ' ');
    for (unsigned i = 1 + random() % 4; i > 0; --i) text += parts[random() % parts.size()] + ",";
    text += "0]";
    Write(text);
    const std::unique_ptr<GenericDocument> fast(LoadJsonDocument(Path()));
    const auto careful = DocumentByCharacters(Path());
    ASSERT_EQ(fast == nullptr, careful == nullptr) << text.substr(60'000);
    if (fast) {
      ASSERT_TRUE(*fast == *careful) << text.substr(60000);
    }
    unreadable += fast == nullptr ? 1 : 0;
  }
  EXPECT_GT(unreadable, 30);
  EXPECT_LT(unreadable, 270);
}
