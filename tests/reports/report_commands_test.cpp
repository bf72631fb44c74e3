#include "reports/report_commands.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>
#include <tuple>

namespace {

using Zq::Gantry::Server::Services::Wattleaf::kEnergyReportFailure;
using Zq::Gantry::Server::Services::Wattleaf::kPowerReportFailure;
using Zq::Gantry::Server::Services::Wattleaf::ToolFailureText;

struct Case {
  int status;
  const wchar_t* text;
};

TEST(ToolFailureText, HasAsManyCharactersAsTheStatus) {
  const Case cases[] = {
      {1, L"E"},
      {5, L"Error"},
      {7, L"Error %"},
      {8, L"Error %d"},
      {37, L"Error %d returned by System() call to"},
      {49, L"Error %d returned by System() call to Powerlog.xm"},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(ToolFailureText(kPowerReportFailure, row.status), row.text) << row.status;
  }
}

TEST(ToolFailureText, ContainsTheFileOfTheEnergyReport) {
  const Case cases[] = {
      {1, L"E"},
      {5, L"Error"},
      {39, L"Error %d returned by System() call to E"},
      {50, L"Error %d returned by System() call to EnergyReport"},
      {53, L"Error %d returned by System() call to EnergyReport.xm"},
  };
  for (const Case& row : cases) {
    EXPECT_EQ(ToolFailureText(kEnergyReportFailure, row.status), row.text) << row.status;
  }
}

TEST(ToolFailureText, IsTheWholeTextAtItsLength) {
  EXPECT_EQ(ToolFailureText(kPowerReportFailure, 50),
            L"Error %d returned by System() call to Powerlog.xml");
  EXPECT_EQ(ToolFailureText(kEnergyReportFailure, 54),
            L"Error %d returned by System() call to EnergyReport.xml");
}

TEST(ToolFailureText, IsNeverLongerThanTheText) {
  for (const int status : {51, 255, 9009, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(ToolFailureText(kPowerReportFailure, status),
              L"Error %d returned by System() call to Powerlog.xml")
        << status;
  }
  for (const int status : {55, 9009, std::numeric_limits<int>::max()}) {
    EXPECT_EQ(ToolFailureText(kEnergyReportFailure, status),
              L"Error %d returned by System() call to EnergyReport.xml")
        << status;
  }
}

TEST(ToolFailureText, ThrowsLengthErrorForANegativeStatus) {
  for (const int status : {-1, std::numeric_limits<int>::min()}) {
    EXPECT_THROW(std::ignore = ToolFailureText(kPowerReportFailure, status), std::length_error)
        << status;
    EXPECT_THROW(std::ignore = ToolFailureText(kEnergyReportFailure, status), std::length_error)
        << status;
  }
}

}  // namespace
