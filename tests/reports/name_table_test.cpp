#include "reports/name_table.h"

#include <gtest/gtest.h>

using Zq::Gantry::Server::Services::Wattleaf::NameTable;

TEST(NameTable, KeepsTheFirstValueOfAName) {
  NameTable<int> table;
  EXPECT_EQ(table.TryFind("a"), nullptr);
  EXPECT_EQ(table.FindOrAdd("a", 1).second, 1);
  EXPECT_EQ(table.FindOrAdd("a", 2).second, 1);
  ASSERT_NE(table.TryFind("a"), nullptr);
  EXPECT_EQ(table.TryFind("a")->second, 1);
}

TEST(NameTable, DistinguishesNamesThatDifferAfterAZero) {
  NameTable<int> table;
  table.FindOrAdd("a", 1);
  EXPECT_EQ(table.FindOrAdd(std::string_view("a\0b", 3), 2).second, 2);
  EXPECT_EQ(table.TryFind(std::string_view("a\0", 2)), nullptr);
}

// Most of these names share their places among the recent ones.
TEST(NameTable, FindsEachOfManyNamesInItsPlace) {
  NameTable<int> table;
  std::vector<const NameTable<int>::Entry*> places;
  for (int i = 0; i < 20'000; ++i) {
    places.push_back(&table.FindOrAdd("name " + std::to_string(i), i));
  }
  for (int i = 0; i < 20'000; ++i) {
    const auto* entry = table.TryFind("name " + std::to_string(i));
    ASSERT_EQ(entry, places[static_cast<std::size_t>(i)]);
    ASSERT_EQ(entry->second, i);
  }
}

TEST(NameTable, ForgetsAnErasedNameOnly) {
  NameTable<int> table;
  for (int i = 0; i < 20'000; ++i) table.FindOrAdd("name " + std::to_string(i), i);
  for (int i = 0; i < 20'000; i += 2) table.Erase(*table.TryFind("name " + std::to_string(i)));
  for (int i = 0; i < 20'000; ++i) {
    ASSERT_EQ(table.TryFind("name " + std::to_string(i)) != nullptr, i % 2 == 1) << i;
  }
  EXPECT_EQ(table.FindOrAdd("name 0", -1).second, -1);
}

TEST(NameTable, MovesWithItsEntries) {
  NameTable<int> table;
  const auto* entry = &table.FindOrAdd("a", 1);
  NameTable<int> moved = std::move(table);
  EXPECT_EQ(moved.TryFind("a"), entry);
}
