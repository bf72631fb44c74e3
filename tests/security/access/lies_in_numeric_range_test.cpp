#include "security/access/rule_judges.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// The limits of a rule by name, and a record of those that were read.
struct Limits {
  std::map<std::wstring, std::wstring> texts;
  std::vector<std::wstring> read{};

  LimitText Reader() {
    return [this](const wchar_t* name) -> std::optional<std::wstring> {
      read.emplace_back(name);
      const auto row = texts.find(name);
      if (row == texts.end()) return std::nullopt;
      return row->second;
    };
  }
};

bool InRange(double number, std::map<std::wstring, std::wstring> texts) {
  return LiesInNumericRange(number, Limits{std::move(texts)}.Reader());
}

TEST(LiesInNumericRange, DropsTheFraction) {
  EXPECT_FALSE(InRange(0.5, {{L"min", L"1"}, {L"max", L"10"}}));
  EXPECT_TRUE(InRange(10.9, {{L"min", L"1"}, {L"max", L"10"}}));
  EXPECT_TRUE(InRange(9.99, {{L"max", L"9"}}));
  EXPECT_TRUE(InRange(-9.99, {{L"min", L"-9"}}));
  EXPECT_TRUE(InRange(-0.9, {{L"min", L"0"}, {L"max", L"0"}}));
}

TEST(LiesInNumericRange, IncludesBothLimits) {
  EXPECT_TRUE(InRange(1, {{L"min", L"1"}, {L"max", L"1"}}));
  EXPECT_FALSE(InRange(0, {{L"min", L"1"}, {L"max", L"1"}}));
  EXPECT_FALSE(InRange(2, {{L"min", L"1"}, {L"max", L"1"}}));
}

TEST(LiesInNumericRange, IsUnboundedOnASideWithoutALimit) {
  EXPECT_TRUE(InRange(-1e6, {{L"max", L"10"}}));
  EXPECT_TRUE(InRange(1e6, {{L"min", L"10"}}));
  EXPECT_TRUE(InRange(0, {}));
}

TEST(LiesInNumericRange, ReadsALimitLikeTheStandardLibrary) {
  EXPECT_TRUE(InRange(12, {{L"min", L" \t\n+12 apples"}}));
  EXPECT_FALSE(InRange(11, {{L"min", L" \t\n+12 apples"}}));
  EXPECT_TRUE(InRange(0, {{L"max", L"0x10"}}));
  EXPECT_FALSE(InRange(1, {{L"max", L"0x10"}}));
  EXPECT_TRUE(InRange(7, {{L"min", L"7\0z"s}}));
}

TEST(LiesInNumericRange, RefusesEveryNumberForALimitWithoutANumber) {
  for (const wchar_t* text : {L"", L" ", L"ten", L"-", L"+ 1", L".5"}) {
    EXPECT_FALSE(InRange(1, {{L"min", text}}));
    EXPECT_FALSE(InRange(1, {{L"max", text}}));
  }
}

TEST(LiesInNumericRange, ThrowsForALimitBeyond32Bits) {
  for (const wchar_t* text :
       {L"2147483648", L"-2147483649", L"4294967296", L"99999999999999999999999"}) {
    EXPECT_THROW(InRange(1, {{L"min", text}}), std::out_of_range);
    EXPECT_THROW(InRange(1, {{L"max", text}}), std::out_of_range);
  }
}

TEST(LiesInNumericRange, DoesNotReadMaxForANumberBelowMin) {
  Limits limits{{{L"min", L"5"}, {L"max", L"4294967296"}}};
  EXPECT_FALSE(LiesInNumericRange(4, limits.Reader()));
  EXPECT_THAT(limits.read, ElementsAre(L"min"));
  EXPECT_THROW(static_cast<void>(LiesInNumericRange(6, limits.Reader())), std::out_of_range);
}

TEST(LiesInNumericRange, IsExactAtTheBoundsOf32Bits) {
  const std::map<std::wstring, std::wstring> all{{L"min", L"-2147483648"}, {L"max", L"2147483647"}};
  EXPECT_TRUE(InRange(2147483647.0, all));
  EXPECT_TRUE(InRange(2147483647.99, all));
  EXPECT_FALSE(InRange(2147483648.0, all));
  EXPECT_TRUE(InRange(-2147483648.0, all));
  EXPECT_TRUE(InRange(-2147483648.99, all));
  EXPECT_FALSE(InRange(-2147483649.0, all));
}

TEST(LiesInNumericRange, PlacesANumberBeyond32BitsAboveOrBelowEveryLimit) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double number : {4294967296.0, 1e300, infinite}) {
    EXPECT_FALSE(InRange(number, {{L"max", L"2147483647"}}));
    EXPECT_TRUE(InRange(number, {{L"min", L"2147483647"}}));
    EXPECT_FALSE(InRange(-number, {{L"min", L"-2147483648"}}));
    EXPECT_TRUE(InRange(-number, {{L"max", L"-2147483648"}}));
    EXPECT_TRUE(InRange(number, {}));
  }
}

TEST(LiesInNumericRange, RefusesNotANumber) {
  Limits limits{{{L"min", L"4294967296"}}};
  EXPECT_FALSE(LiesInNumericRange(std::nan(""), limits.Reader()));
  EXPECT_THAT(limits.read, IsEmpty());
  EXPECT_FALSE(InRange(std::nan(""), {}));
}

}  // namespace
}  // namespace Zq::Gantry::Security
