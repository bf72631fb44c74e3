#include "ledger/base64_text.h"

#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <utility>

#include "ledger/literal_base64.h"

using namespace std::string_literals;
using TestSupport::LiteralBase64;
using Zq::Gantry::Server::Services::Wattleaf::TryDecodeBase64;

namespace {

constexpr std::string_view kBase64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

std::string AnyOf(std::string_view chars, std::size_t count, std::mt19937& random) {
  std::string text(count, '\0');
  for (char& c : text) c = chars[random() % chars.size()];
  return text;
}

void ExpectLiteral(const std::string& text) {
  EXPECT_EQ(TryDecodeBase64(text), LiteralBase64(text)) << testing::PrintToString(text);
}

}  // namespace

TEST(TryDecodeBase64, DecodesTheExamplesOfItsStandard) {
  // RFC 4648, section 10.
  const std::pair<const char*, const char*> examples[] = {
      {"Zg==", "f"},        {"Zm8=", "fo"},        {"Zm9v", "foo"},
      {"Zm9vYg==", "foob"}, {"Zm9vYmE=", "fooba"}, {"Zm9vYmFy", "foobar"},
  };
  for (const auto& [text, bytes] : examples) EXPECT_EQ(TryDecodeBase64(text), bytes) << text;
}

TEST(TryDecodeBase64, DecodesEachCharacterOfTheAlphabet) {
  // The numbers 0 to 63, of six bits each.
  EXPECT_EQ(TryDecodeBase64(kBase64Alphabet),
            "\x00\x10\x83\x10\x51\x87\x20\x92\x8B\x30\xD3\x8F\x41\x14\x93\x51"
            "\x55\x97\x61\x96\x9B\x71\xD7\x9F\x82\x18\xA3\x92\x59\xA7\xA2\x9A"
            "\xAB\xB2\xDB\xAF\xC3\x1C\xB3\xD3\x5D\xB7\xE3\x9E\xBB\xF3\xDF\xBF"s);
}

TEST(TryDecodeBase64, AcceptsALineEndAfterEachGroup) {
  for (const char* text : {"Zm9vYmFy\r\n", "Zm9v\r\nYmFy", "Zm9v\r\nYmFy\r\n"}) {
    EXPECT_EQ(TryDecodeBase64(text), "foobar") << testing::PrintToString(text);
  }
  EXPECT_EQ(TryDecodeBase64("Zm9v\r\nYg==\r\n"), "foob");
}

TEST(TryDecodeBase64, IsEmptyForOtherLineEnds) {
  for (const char* text : {"\r\nZm9v", "Zm9v\r\n\r\nYmFy", "Zm9v\r\n\r\n", "Zm9v\n", "Zm9v\r",
                           "Zm9v\nYmFy", "Zm9v\rYmFy", "Zm9v\n\rYmFy", "Zm\r\n9v",
                           "Zm9vYg\r\n==", "Zm9vYg=\r\n=", "\r\n", "\r\n\r\n"}) {
    EXPECT_EQ(TryDecodeBase64(text), std::nullopt) << testing::PrintToString(text);
  }
}

TEST(TryDecodeBase64, IsEmptyForAnIncompleteGroup) {
  for (const char* text : {"", "Z", "Zm", "Zm9", "Zm9vY", "Zm9vYm", "Zm9vYmF",
                           "Zg=", "Z===", "====", "Zm9vZ===", "Zm9v===="}) {
    EXPECT_EQ(TryDecodeBase64(text), std::nullopt) << text;
  }
}

TEST(TryDecodeBase64, IsEmptyIfAnythingFollowsThePadding) {
  for (const char* text : {"Zg==Zg==", "Zm8=Zm9v", "Zg==\r\nZm9v", "Zg== ", "Zg==x", "Zg==\n"}) {
    EXPECT_EQ(TryDecodeBase64(text), std::nullopt) << testing::PrintToString(text);
  }
}

TEST(TryDecodeBase64, IsEmptyIfABitBeforeThePaddingBelongsToNoByte) {
  // "g" is 32 and "h" 33, of which one byte takes the upper two bits; "8" is 60 and "9" 61, of
  // which two bytes take the upper four.
  EXPECT_EQ(TryDecodeBase64("Zh=="), std::nullopt);
  EXPECT_EQ(TryDecodeBase64("Zo=="), std::nullopt);
  EXPECT_EQ(TryDecodeBase64("Zm9="), std::nullopt);
  EXPECT_EQ(TryDecodeBase64("Zm+="), std::nullopt);
}

TEST(TryDecodeBase64, DecodesTextsOfAllLengthsLikeTheLiteralAlgorithm) {
  std::mt19937 random(1);
  for (std::size_t count = 0; count <= 300; ++count) {
    std::string text = AnyOf(kBase64Alphabet, count, random);
    ExpectLiteral(text);
    ExpectLiteral(text + "=");
    ExpectLiteral(text + "==");
    for (std::size_t place = text.size() / 64 * 64; place > 0; place -= 64) {
      text.insert(place, "\r\n");
    }
    ExpectLiteral(text);
    ExpectLiteral(text + "\r\n");
  }
}

TEST(TryDecodeBase64, DecodesATextWithOneOtherCharacterLikeTheLiteralAlgorithm) {
  const std::string text = "Zm9v\r\nYmFyZm9v\r\nYg==";
  for (std::size_t place = 0; place <= text.size(); ++place) {
    for (int c = 0; c < 256; ++c) {
      std::string longer = text;
      ExpectLiteral(longer.insert(place, 1, static_cast<char>(c)));
      if (place == text.size()) continue;
      std::string other = text;
      other[place] = static_cast<char>(c);
      ExpectLiteral(other);
    }
  }
}

TEST(TryDecodeBase64, DecodesRandomTextsLikeTheLiteralAlgorithm) {
  std::mt19937 random(2);
  int decoded = 0;
  for (int i = 0; i < 20'000; ++i) {
    std::string text;
    const std::size_t oddShare = 2 + random() % 40;
    for (std::size_t groups = 1 + random() % 8; groups > 0; --groups) {
      text += AnyOf(kBase64Alphabet, 4, random);
      if (random() % oddShare == 0) text += AnyOf("\r\n=A ", 1 + random() % 2, random);
      if (random() % 3 == 0) text += "\r\n";
    }
    if (random() % 2 == 0) text += AnyOf(kBase64Alphabet, 3, random) + "=";
    ExpectLiteral(text);
    decoded += TryDecodeBase64(text) ? 1 : 0;
  }
  EXPECT_GT(decoded, 5'000);
  EXPECT_LT(decoded, 15'000);
}
