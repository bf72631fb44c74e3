// Each text that TryDecodeBase64 decodes has the bytes that the platform finds in it, and it
// decodes each text that the platform encodes.
#include <cstddef>
#include <optional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "ledger/base64_text.h"
#include "ledger/encrypted_samples.h"
#include "ledger/platform_base64.h"

using TestSupport::AlmostBase64;
using TestSupport::PlatformBase64;
using Zq::Gantry::Server::Services::Wattleaf::TryDecodeBase64;

namespace {

/// Compares texts and counts them.
class Base64Comparison {
 public:
  void Check(const std::string& text) {
    ++compared;
    const std::optional<std::string> bytes = TryDecodeBase64(text);
    if (!bytes) return;
    ++decoded;
    EXPECT_EQ(bytes, PlatformBase64(text)) << testing::PrintToString(text);
  }

  int compared = 0;
  int decoded = 0;  ///< by TryDecodeBase64
};

std::string RandomBytes(std::size_t count, std::mt19937& random) {
  std::string bytes(count, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

}  // namespace

TEST(Base64AgainstThePlatform, DecodesWhatThePlatformEncodes) {
  std::mt19937 random(1);
  for (std::size_t i = 1; i <= 6'000; ++i) {
    const std::string bytes = RandomBytes(i <= 1'200 ? (i + 3) / 4 : 1 + random() % 300, random);
    const std::string lines = TestSupport::Base64(bytes);
    std::string oneLine = lines;
    std::erase_if(oneLine, [](char c) { return c == '\r' || c == '\n'; });
    for (const std::string& text : {lines, oneLine}) {
      EXPECT_EQ(TryDecodeBase64(text), bytes) << text;
      EXPECT_EQ(PlatformBase64(text), bytes) << text;
    }
  }
}

TEST(Base64AgainstThePlatform, DecodesADamagedTextToTheSameBytesOrNotAtAll) {
  std::mt19937 random(2);
  Base64Comparison comparison;
  for (const std::size_t length : {49U, 50U, 51U}) {
    // A line end after 64 of 68 characters.
    const std::string text = TestSupport::Base64(RandomBytes(length, random));
    for (std::size_t place = 0; place < text.size(); ++place) {
      for (int c = 0; c < 256; ++c) {
        std::string other = text;
        other[place] = static_cast<char>(c);
        comparison.Check(other);
        std::string longer = text;
        comparison.Check(longer.insert(place, 1, static_cast<char>(c)));
      }
      std::string shorter = text;
      comparison.Check(shorter.erase(place, 1));
    }
  }
  EXPECT_GT(comparison.compared, 100'000);
  // Each of 68 places takes each character of the alphabet, except where bits before padding would
  // be set.
  EXPECT_GT(comparison.decoded, 10'000);
}

TEST(Base64AgainstThePlatform, DecodesTextsOfOtherFormsToTheSameBytesOrNotAtAll) {
  Base64Comparison comparison;
  const std::string group = "Zm9v";
  const std::string lines[] = {
      "Zm9vYmFyZm9vYmFy", "Zm9vYmFy", "Zm9vYg==", "Zm9vYmE=", "Zm9vYh==", "Zm9vYmF="};
  for (const std::string& line : lines) {
    for (const char* part : {"\r\n", "\n", "\r", "\n\r", "\r\n\r\n", " ", "\t", "=",
                             "==", "===", "====", "xx", "Zm9v", "\r\nZm9v", "-", "_", "\xFF",
                             "-----BEGIN CERTIFICATE-----\r\n", "-----END CERTIFICATE-----\r\n"}) {
      for (std::size_t place = 0; place <= line.size(); ++place) {
        std::string text = line;
        text.insert(place, part);
        comparison.Check(text);
        comparison.Check(text + "\r\n");
        comparison.Check(group + "\r\n" + text);
        comparison.Check("-----BEGIN CERTIFICATE-----\r\n" + text +
                         "\r\n-----END CERTIFICATE-----\r\n");
      }
    }
  }
  EXPECT_GT(comparison.decoded, 100);
  EXPECT_LT(comparison.decoded, comparison.compared / 2);
}

TEST(Base64AgainstThePlatform, DecodesRandomTextsToTheSameBytesOrNotAtAll) {
  std::mt19937 random(3);
  Base64Comparison comparison;
  for (int i = 0; i < 20'000; ++i) comparison.Check(AlmostBase64(random));
  EXPECT_GT(comparison.decoded, 1'000);
  EXPECT_LT(comparison.decoded, 15'000);
}
