#include "service/result_text.h"

#include <gtest/gtest.h>

#include <cstdlib>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

bool Crosses(const std::wstring& text) {
  wchar_t* block = nullptr;
  const bool crossed = HandOver(text, &block);
  EXPECT_EQ(crossed, block != nullptr);
  if (crossed) {
    EXPECT_EQ(std::wstring(block), text);
  }
  std::free(block);
  return crossed;
}

}  // namespace

TEST(ResultBlock, AResultOf65535CharactersCrosses) {
  EXPECT_TRUE(Crosses(std::wstring(65535, L'x')));
}

TEST(ResultBlock, AResultOf65536CharactersDoesNot) {
  EXPECT_FALSE(Crosses(std::wstring(65536, L'x')));
}

TEST(ResultBlock, AnEmptyResultDoesNot) { EXPECT_FALSE(Crosses(L"")); }

TEST(ResultBlock, ANullPlaceIsRefused) { EXPECT_FALSE(HandOver(L"true", nullptr)); }

TEST(ResultBlock, ARefusedResultLeavesThePlaceAsItWas) {
  wchar_t marker = L'm';
  wchar_t* place = &marker;
  EXPECT_FALSE(HandOver(std::wstring(65536, L'x'), &place));
  EXPECT_EQ(place, &marker);
}
