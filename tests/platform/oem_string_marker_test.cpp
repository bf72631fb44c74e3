#include "platform/wmi/support_decision.h"

#include <gtest/gtest.h>

using namespace Zq::Gantry::Server::Shared::WMI;

namespace {

bool Holds(const wchar_t* json) {
  WideDocument document;
  document.Parse(json);
  return HoldsCarbonMarker(document);
}

}  // namespace

TEST(HoldsCarbonMarker, FindsTheMarkerAnywhereInAnyString) {
  EXPECT_TRUE(Holds(LR"({"result":["CarbonSupport=1"]})"));
  EXPECT_TRUE(Holds(LR"({"result":["a","b","x;CarbonSupport=1;y"]})"));
  EXPECT_TRUE(Holds(LR"({"result":["","CarbonSupport=1"]})"));
}

TEST(HoldsCarbonMarker, AcceptsTextAfterTheMarker) {
  EXPECT_TRUE(Holds(LR"({"result":["CarbonSupport=10"]})"));
}

TEST(HoldsCarbonMarker, RequiresTheExactMarker) {
  EXPECT_FALSE(Holds(LR"({"result":["carbonsupport=1"]})"));
  EXPECT_FALSE(Holds(LR"({"result":["CarbonSupport=0"]})"));
  EXPECT_FALSE(Holds(LR"({"result":["CarbonSupport =1"]})"));
  EXPECT_FALSE(Holds(LR"({"result":["CarbonSupport=","1"]})"));
}

TEST(HoldsCarbonMarker, IsFalseForAnEmptyArrayOrAMissingMember) {
  EXPECT_FALSE(Holds(LR"({"result":[]})"));
  EXPECT_FALSE(Holds(LR"({})"));
  EXPECT_FALSE(Holds(LR"({"Result":["CarbonSupport=1"]})"));
}

TEST(HoldsCarbonMarker, IsFalseWhenTheResultIsNotAnArray) {
  EXPECT_FALSE(Holds(LR"({"result":"CarbonSupport=1"})"));
  EXPECT_FALSE(Holds(LR"({"result":1})"));
  EXPECT_FALSE(Holds(LR"({"result":true})"));
  EXPECT_FALSE(Holds(LR"({"result":null})"));
  EXPECT_FALSE(Holds(LR"({"result":{"CarbonSupport=1":"CarbonSupport=1"}})"));
}

TEST(HoldsCarbonMarker, StopsAtTheFirstElementThatIsNotAString) {
  EXPECT_FALSE(Holds(LR"({"result":[1,"CarbonSupport=1"]})"));
  EXPECT_FALSE(Holds(LR"({"result":[true]})"));
  EXPECT_TRUE(Holds(LR"({"result":["CarbonSupport=1",1]})"));
}

TEST(HoldsCarbonMarker, IgnoresTextAfterAnEmbeddedNull) {
  EXPECT_FALSE(Holds(L"{\"result\":[\"a\\u0000CarbonSupport=1\"]}"));
}
