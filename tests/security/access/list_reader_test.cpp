#include "security/access/rule_judges.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_view_literals;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::wstring> ItemsOf(std::wstring_view text) {
  std::vector<std::wstring> items;
  ListReader reader(text);
  while (const auto item = reader.TryNext()) items.emplace_back(*item);
  return items;
}

TEST(ListReader, SplitsAtEveryComma) {
  EXPECT_THAT(ItemsOf(L"one,two,three"), ElementsAre(L"one", L"two", L"three"));
  EXPECT_THAT(ItemsOf(L"one"), ElementsAre(L"one"));
  EXPECT_THAT(ItemsOf(L"one;two|three\nfour"), ElementsAre(L"one;two|three\nfour"));
}

TEST(ListReader, TrimsNothing) {
  EXPECT_THAT(ItemsOf(L" one, two\t,\nthree "), ElementsAre(L" one", L" two\t", L"\nthree "));
}

TEST(ListReader, AddsNoItemForACommaAtTheEnd) {
  EXPECT_THAT(ItemsOf(L"one,"), ElementsAre(L"one"));
  EXPECT_THAT(ItemsOf(L","), ElementsAre(L""));
}

TEST(ListReader, AddsAnEmptyItemForTwoCommasInARow) {
  EXPECT_THAT(ItemsOf(L"one,,two"), ElementsAre(L"one", L"", L"two"));
  EXPECT_THAT(ItemsOf(L",one"), ElementsAre(L"", L"one"));
  EXPECT_THAT(ItemsOf(L"one,,"), ElementsAre(L"one", L""));
}

TEST(ListReader, FindsNoItemsInAnEmptyText) { EXPECT_THAT(ItemsOf(L""), IsEmpty()); }

TEST(ListReader, KeepsNullCharactersInAnItem) {
  EXPECT_THAT(ItemsOf(L"a\0b,c"sv), ElementsAre(std::wstring(L"a\0b", 3), L"c"));
}

}  // namespace
}  // namespace Zq::Gantry::Security
