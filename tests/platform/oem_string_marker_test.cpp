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

TEST(HoldsCarbonMarker, FindsTheMarkerAnywhereInAnyText) {
  EXPECT_TRUE(Holds(LR"({"result":["CarbonSupport=1"]})"));
  EXPECT_TRUE(Holds(LR"({"result":["a","b","x;CarbonSupport=1;y"]})"));
  EXPECT_TRUE(Holds(LR"({"result":["","CarbonSupport=1"]})"));
}

TEST(HoldsCarbonMarker, TextMayGoOnAfterTheMarker) {
  EXPECT_TRUE(Holds(LR"({"result":["CarbonSupport=10"]})"));
}

TEST(HoldsCarbonMarker, CaseAndEachCharacterCount) {
  EXPECT_FALSE(Holds(LR"({"result":["carbonsupport=1"]})"));
  EXPECT_FALSE(Holds(LR"({"result":["CarbonSupport=0"]})"));
  EXPECT_FALSE(Holds(LR"({"result":["CarbonSupport =1"]})"));
  EXPECT_FALSE(Holds(LR"({"result":["CarbonSupport=","1"]})"));
}

TEST(HoldsCarbonMarker, EmptyArrayAndMissingMemberHoldNothing) {
  EXPECT_FALSE(Holds(LR"({"result":[]})"));
  EXPECT_FALSE(Holds(LR"({})"));
  EXPECT_FALSE(Holds(LR"({"Result":["CarbonSupport=1"]})"));
}

TEST(HoldsCarbonMarker, ResultThatIsNoArrayHoldsNothing) {
  EXPECT_FALSE(Holds(LR"({"result":"CarbonSupport=1"})"));
  EXPECT_FALSE(Holds(LR"({"result":1})"));
  EXPECT_FALSE(Holds(LR"({"result":true})"));
  EXPECT_FALSE(Holds(LR"({"result":null})"));
  EXPECT_FALSE(Holds(LR"({"result":{"CarbonSupport=1":"CarbonSupport=1"}})"));
}

TEST(HoldsCarbonMarker, ElementThatIsNoTextEndsTheSearch) {
  EXPECT_FALSE(Holds(LR"({"result":[1,"CarbonSupport=1"]})"));
  EXPECT_FALSE(Holds(LR"({"result":[true]})"));
  EXPECT_TRUE(Holds(LR"({"result":["CarbonSupport=1",1]})"));
}

TEST(HoldsCarbonMarker, TextEndsAtItsFirstNull) {
  EXPECT_FALSE(Holds(L"{\"result\":[\"a\\u0000CarbonSupport=1\"]}"));
}
