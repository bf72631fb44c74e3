#include "base/word_scan.h"

#include <gtest/gtest.h>

#include <string>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

constexpr std::size_t kLengths = 40;  // Several words, and each length of the rest after them.

}  // namespace

TEST(IsSameText, IsTrueForTheSameBytesAtAnyAddress) {
  const std::string text = "0123456789\xFF\x80\x01 abcdefghijklmnopqrstuvwxyz";
  for (std::size_t begin = 0; begin < 9; ++begin) {
    for (std::size_t length = 0; begin + length < text.size(); ++length) {
      const std::string copy = text.substr(begin, length);
      EXPECT_TRUE(IsSameText(copy, std::string_view(text).substr(begin, length)));
    }
  }
}

TEST(IsSameText, IsFalseIfOneByteDiffers) {
  for (std::size_t length = 1; length < kLengths; ++length) {
    const std::string text(length, 'a');
    for (std::size_t place = 0; place < length; ++place) {
      std::string other = text;
      other[place] = 'b';
      EXPECT_FALSE(IsSameText(text, other)) << length << ' ' << place;
      other[place] = '\0';
      EXPECT_FALSE(IsSameText(other, text)) << length << ' ' << place;
    }
  }
}

TEST(IsSameText, IsFalseForATextAndItsBeginning) {
  for (std::size_t length = 1; length < kLengths; ++length) {
    const std::string text(length, '\0');
    EXPECT_FALSE(IsSameText(text, std::string(length - 1, '\0'))) << length;
    EXPECT_FALSE(IsSameText(std::string(length - 1, '\0'), text)) << length;
  }
}

TEST(FindZeroByte, FindsTheFirstOfTwo) {
  for (const char other : {'\x01', 'a', '\x80', '\xFF'}) {
    for (std::size_t length = 1; length < kLengths; ++length) {
      for (std::size_t place = 0; place < length; ++place) {
        std::string text(length, other);
        text.back() = '\0';
        text[place] = '\0';
        EXPECT_EQ(FindZeroByte(text), place) << length;
      }
    }
  }
}

TEST(FindZeroByte, FindsNoneAmongOtherBytes) {
  for (int byte = 1; byte < 256; ++byte) {
    for (std::size_t length = 0; length < kLengths; ++length) {
      EXPECT_EQ(FindZeroByte(std::string(length, static_cast<char>(byte))), std::string::npos)
          << byte << ' ' << length;
    }
  }
}

TEST(FindZeroByte, DoesNotLookBeyondTheText) {
  const std::string text = std::string(11, 'a') + std::string(8, '\0');
  EXPECT_EQ(FindZeroByte(std::string_view(text).substr(0, 11)), std::string::npos);
}
