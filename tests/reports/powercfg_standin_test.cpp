// The stand-in of POWERCFG as a program.

#include <windows.h>

#include <time.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pugixml.hpp>

#include <array>
#include <ctime>
#include <string>
#include <vector>

#include "reports/real_tool.h"
#include "reports/report_commands.h"
#include "reports/report_runner.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using testing::StartsWith;
using Zq::Gantry::Server::Services::Wattleaf::kEnergyReportCommand;
using Zq::Gantry::Server::Services::Wattleaf::kPowerReportCommand;
using Zq::Gantry::Server::Services::Wattleaf::RunReportTool;

namespace {

constexpr __time64_t kFridayNoon = 1'778'846'400;  // 2026-05-15 12:00:00 UTC

class PowercfgStandin : public testing::Test {
 protected:
  PowercfgStandin() {
    tool.Set(L"SEED", L"1");
    tool.Set(L"DAYS", L"1");
    tool.Set(L"NOW", std::to_wstring(kFridayNoon));
  }

  int Run(const char* commandLine) const {
    return RunReportTool(tool.Folder().Path().c_str(), commandLine);
  }
  std::wstring Report() const { return tool.Folder().File(L"Powerlog.xml"); }

  RealTool tool;
};

std::wstring LocalText(__time64_t instant) {
  std::tm fields{};
  _localtime64_s(&fields, &instant);
  std::array<wchar_t, 32> text{};
  return {text.data(), std::wcsftime(text.data(), text.size(), L"%Y-%m-%d:%H:%M:%S", &fields)};
}

}  // namespace

TEST_F(PowercfgStandin, WritesUtf16ForEvenSeedsAndUtf8ForOddOnes) {
  ASSERT_EQ(Run(kPowerReportCommand), 0);
  EXPECT_THAT(ReadWholeFile(Report()), StartsWith("<?xml"));
  tool.Set(L"SEED", L"2");
  ASSERT_EQ(Run(kPowerReportCommand), 0);
  EXPECT_THAT(ReadWholeFile(Report()), StartsWith(std::string("\xFF\xFE<\0?\0", 6)));
}

TEST_F(PowercfgStandin, WritesWellFormedXmlWithTheDeviceOfDriveC) {
  std::array<wchar_t, 1024> device{};
  QueryDosDeviceW(L"C:", device.data(), static_cast<DWORD>(device.size()));
  const std::wstring foreign =
      std::wstring(device.data()) + L"\\Program Files\\\u00DCberblick\\\u00FCberblick.exe";
  for (const wchar_t* seed : {L"1", L"2"}) {
    tool.Set(L"SEED", seed);
    tool.Set(L"DAYS", L"60");
    ASSERT_EQ(Run(kPowerReportCommand), 0);
    pugi::xml_document document;
    ASSERT_TRUE(document.load_file(Report().c_str()));
    const auto row = document.document_element().find_child_by_attribute(L"AppId", foreign.c_str());
    EXPECT_TRUE(row.child(L"TotalEnergyConsumption"));
  }
}

TEST_F(PowercfgStandin, WritesTimesInTheLocalZoneOfTheCaller) {
  ASSERT_EQ(Run(kPowerReportCommand), 0);
  pugi::xml_document document;
  ASSERT_TRUE(document.load_file(Report().c_str()));
  const std::wstring first =
      document.document_element().first_child().attribute(L"TimeStamp").value();
  // Seed 1 has its rows at 11 minutes and 6 seconds of each hour.
  EXPECT_EQ(first, LocalText(kFridayNoon - 24 * 3600 + 666));
}

TEST_F(PowercfgStandin, CopiesTheReportToTheTruthFile) {
  const std::wstring truth = tool.Folder().File(L"truth.xml");
  tool.Set(L"TRUTH", truth);
  ASSERT_EQ(Run(kPowerReportCommand), 0);
  EXPECT_EQ(ReadWholeFile(truth), ReadWholeFile(Report()));
}

TEST_F(PowercfgStandin, FailsWithTheRequestedStatusAndWritesNothing) {
  const std::wstring truth = tool.Folder().File(L"truth.xml");
  tool.Set(L"TRUTH", truth);
  tool.Set(L"STATUS", L"17");
  EXPECT_EQ(Run(kPowerReportCommand), 17);
  EXPECT_FALSE(FileExists(Report()));
  EXPECT_FALSE(FileExists(truth));
}

TEST_F(PowercfgStandin, CanSucceedWithoutAReport) {
  tool.Set(L"OUTPUT", L"nothing");
  EXPECT_EQ(Run(kPowerReportCommand), 0);
  EXPECT_FALSE(FileExists(Report()));
}

TEST_F(PowercfgStandin, CanWriteABrokenReport) {
  for (const wchar_t* seed : {L"1", L"2"}) {
    tool.Set(L"SEED", seed);
    tool.Set(L"OUTPUT", L"broken");
    ASSERT_EQ(Run(kPowerReportCommand), 0);
    pugi::xml_document document;
    EXPECT_FALSE(document.load_file(Report().c_str()));
  }
}

TEST_F(PowercfgStandin, WritesTheReportOfEnergyProblems) {
  ASSERT_EQ(Run(kEnergyReportCommand), 0);
  pugi::xml_document document;
  ASSERT_TRUE(document.load_file(tool.Folder().File(L"EnergyReport.xml").c_str()));
  EXPECT_TRUE(document.document_element().first_child());
}

TEST_F(PowercfgStandin, FailsWhenTheReportCannotBeWritten) {
  EXPECT_EQ(Run("POWERCFG /SRUMUTIL /OUTPUT missing\\Powerlog.xml /XML"), 2);
}

TEST_F(PowercfgStandin, FailsForAnUnknownCommandLine) {
  EXPECT_EQ(Run("POWERCFG > usage.txt"), 1);
  EXPECT_EQ(Run("POWERCFG /srumutil /OUTPUT Powerlog.xml /XML > usage.txt"), 1);
  EXPECT_FALSE(FileExists(Report()));
  EXPECT_THAT(ReadWholeFile(tool.Folder().File(L"usage.txt")), StartsWith("Stand-in. Usage:"));
}
