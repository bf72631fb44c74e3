#include <gtest/gtest.h>

#include <string>

#include "series.h"

using WattleafHost::TryReadSeries;

TEST(HostSeries, ReadsRangeLabelsAndValuesInOrder) {
  const auto series = TryReadSeries(
      R"({"Range":[0.0,3.5],"Value":[{"Time":"2:00","Value":0.0},{"Time":"3:00","Value":3.5}]})");
  ASSERT_TRUE(series.has_value());
  EXPECT_EQ(series->low, 0.0);
  EXPECT_EQ(series->high, 3.5);
  ASSERT_EQ(series->entries.size(), 2u);
  EXPECT_EQ(series->entries[0].label, "2:00");
  EXPECT_EQ(series->entries[1].label, "3:00");
  EXPECT_EQ(series->entries[1].value, 3.5);
}

TEST(HostSeries, LabelMemberMayHaveAnyName) {
  for (const char* name : {"Time", "Day", "Month"}) {
    const auto series = TryReadSeries(std::string(R"({"Range":[1,2],"Value":[{")") + name +
                                      R"(":"x","Value":2}]})");
    ASSERT_TRUE(series.has_value()) << name;
    EXPECT_EQ(series->entries.at(0).label, "x") << name;
  }
}

TEST(HostSeries, RefusesTextsOfAnotherShape) {
  const char* const texts[] = {
      "",
      "true",
      "[]",
      "{}",
      R"({"Range":[0.0,1.0]})",
      R"({"Value":[]})",
      R"({"Range":[0.0],"Value":[]})",
      R"({"Range":["a","b"],"Value":[]})",
      R"({"Range":[0,1],"Value":{}})",
      R"({"Range":[0,1],"Value":[1]})",
      R"({"Range":[0,1],"Value":[{"Value":1}]})",
      R"({"Range":[0,1],"Value":[{"Time":1,"Value":1}]})",
      R"({"Range":[0,1],"Value":[{"Time":"1:00","Value":"1"}]})",
      R"({"Range":[0,1],"Value":[)",
  };
  for (const char* text : texts) EXPECT_FALSE(TryReadSeries(text).has_value()) << text;
}

TEST(HostSeries, DeepNestingDoesNotExhaustTheStack) {
  EXPECT_FALSE(TryReadSeries(std::string(1000000, '[')).has_value());
}
