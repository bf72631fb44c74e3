#include <gmock/gmock.h>

#include "security/trust/util_helper.h"
#include "support/log_capture.h"

namespace Zq::Gantry::Server::Services {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::LogCapture;
using TestSupport::Warning;

TEST(NullChecker, LogsAWarningForEachNullArgument) {
  const LogCapture log;
  const int value = 1;
  std::vector<UtilHelper::NamedArgument> arguments{
      {nullptr, "first"}, {&value, "second"}, {nullptr, "third"}};
  EXPECT_TRUE(UtilHelper::NullChecker(arguments, L"WattleafService"));
  EXPECT_THAT(log.Records(),
              ElementsAre(Warning(L"class Zq::Gantry::Server::Services::UtilHelper.NullChecker - "
                                  L"first cannot be null",
                                  L"WattleafService"),
                          Warning(L"class Zq::Gantry::Server::Services::UtilHelper.NullChecker - "
                                  L"third cannot be null",
                                  L"WattleafService")));
}

TEST(NullChecker, FindsANullArgumentAfterOthers) {
  const LogCapture log;
  const int value = 1;
  std::vector<UtilHelper::NamedArgument> arguments{{&value, "first"}, {nullptr, "last"}};
  EXPECT_TRUE(UtilHelper::NullChecker(arguments, L""));
  EXPECT_EQ(log.Records().size(), 1U);
}

TEST(NullChecker, ReturnsFalseAndLogsNothingWhenNoArgumentIsNull) {
  const LogCapture log;
  const int value = 1;
  std::vector<UtilHelper::NamedArgument> arguments{{&value, "first"}, {&value, "second"}};
  EXPECT_FALSE(UtilHelper::NullChecker(arguments, L"WattleafService"));
  EXPECT_FALSE(UtilHelper::NullChecker(arguments, L"WattleafService"));  // an empty list
  EXPECT_THAT(log.Records(), IsEmpty());
}

TEST(NullChecker, EmptiesTheList) {
  const LogCapture log;
  const int value = 1;
  std::vector<UtilHelper::NamedArgument> arguments{{nullptr, "first"}, {&value, "second"}};
  UtilHelper::NullChecker(arguments, L"");
  EXPECT_THAT(arguments, IsEmpty());
}

TEST(BeginsWith, IgnoresCaseAndAcceptsAnEmptyPrefix) {
  EXPECT_TRUE(UtilHelper::BeginsWith(L"c:\\windows\\x", L"C:\\WINDOWS\\"));
  EXPECT_FALSE(UtilHelper::BeginsWith(L"c:\\windows", L"C:\\WINDOWS\\"));
  EXPECT_TRUE(UtilHelper::BeginsWith(L"", L""));
}

}  // namespace
}  // namespace Zq::Gantry::Server::Services
