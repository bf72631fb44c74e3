#include "base/byte_text.h"

#include <gtest/gtest.h>

#include <string_view>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

std::wstring Widened(std::string_view bytes) {
  return WidenBytes(bytes.data(), bytes.data() + bytes.size());
}

std::string Narrowed(std::wstring_view chars) {
  return NarrowChars(chars.data(), chars.data() + chars.size());
}

}  // namespace

TEST(WidenBytes, IsExactForAscii) {
  EXPECT_EQ(Widened("2026-11-20 A~"), L"2026-11-20 A~");
  EXPECT_EQ(Widened(""), L"");
}

TEST(WidenBytes, SignExtendsHighBytes) {
  const std::wstring wide = Widened("\x80\xFF\x7F");
  ASSERT_EQ(wide.size(), 3U);
  EXPECT_EQ(wide[0], static_cast<wchar_t>(-128));
  EXPECT_EQ(wide[1], static_cast<wchar_t>(-1));
  EXPECT_EQ(wide[2], L'\x7F');
}

TEST(WidenBytes, DoesNotDecodeUtf8) {
  // U+00E4 in UTF-8 has two bytes and stays two characters.
  EXPECT_EQ(Widened("\xC3\xA4").size(), 2U);
}

TEST(WidenBytes, KeepsZeroBytes) {
  EXPECT_EQ(Widened(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(NarrowChars, KeepsTheLowByte) {
  EXPECT_EQ(Narrowed(L"\x0141\x00E9\x4E00z"), std::string("\x41\xE9\x00z", 4));
  EXPECT_EQ(Narrowed(L""), "");
}

TEST(NarrowChars, InvertsWidenBytes) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  EXPECT_EQ(Narrowed(Widened(all)), all);
}
