#include "base/utf8_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

namespace {

using namespace std::string_literals;
using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

TEST(Utf8Text, ConvertsBothWaysForEachEncodedLength) {
  const std::wstring wide = L"a\u00e9\u20ac\U0001F333";
  const std::string bytes = "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8C\xB3";
  EXPECT_EQ(ToUtf8(wide), bytes);
  EXPECT_EQ(FromUtf8(bytes), wide);
}

TEST(Utf8Text, ConvertsTheFirstAndTheLastCharacterOfEachEncodedLength) {
  const std::pair<std::wstring, std::string> cases[] = {
      {L"\x7F", "\x7F"},
      {L"\x80", "\xC2\x80"},
      {L"\x7FF", "\xDF\xBF"},
      {L"\x800", "\xE0\xA0\x80"},
      {L"\xFFFF", "\xEF\xBF\xBF"},
      {L"\U00010000", "\xF0\x90\x80\x80"},
      {L"\U0010FFFF", "\xF4\x8F\xBF\xBF"},
  };
  for (const auto& [wide, bytes] : cases) {
    EXPECT_EQ(ToUtf8(wide), bytes) << testing::PrintToString(bytes);
    EXPECT_EQ(FromUtf8(bytes), wide) << testing::PrintToString(bytes);
  }
}

TEST(Utf8Text, ConvertsEmptyTexts) {
  EXPECT_EQ(ToUtf8(L""), "");
  EXPECT_EQ(FromUtf8(""), L"");
}

TEST(Utf8Text, KeepsEmbeddedZeros) {
  EXPECT_EQ(ToUtf8(L"a\0b"s), "a\0b"s);
  EXPECT_EQ(FromUtf8("a\0b"s), L"a\0b"s);
}

TEST(ToUtf8, ReplacesALoneSurrogate) {
  const std::wstring lone{L'x', static_cast<wchar_t>(0xD800), L'y'};
  EXPECT_EQ(ToUtf8(lone), "x\xEF\xBF\xBDy");
}

TEST(FromUtf8, ReplacesAnInvalidByte) {
  EXPECT_EQ(FromUtf8("caf\xE9"), L"caf\xFFFD");
  EXPECT_EQ(FromUtf8("\xFCmlaut"), L"\xFFFDmlaut");
}

}  // namespace
