#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "base/json_document.h"
#include "catalogue/sample_program.h"
#include "collection/ledger_fixture.h"
#include "collection/open_helper.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

namespace TestSupport {

// A report with one row, and rows as the store writes them. At the fixture's time kForgottenRow is
// one second too old to be kept.
inline constexpr char kReport[] =
    "<Report><Row AppId='new' TimeStamp='2026-11-14:02:10:46'>"
    "<TotalEnergyConsumption Value='17'/></Row></Report>";
inline constexpr char kNewRow[] =
    R"({"Name":"new","DisplayName":"","TimeStamp":"2026-11-14:02:10:46","TotalEnergy":17})";
inline constexpr char kOldRow[] =
    R"({"Name":"old","DisplayName":"Old","TimeStamp":"2026-11-01:02:00:00","TotalEnergy":5})";
inline constexpr char kForgottenRow[] =
    R"({"Name":"old","DisplayName":"Old","TimeStamp":"2026-10-15:10:30:14","TotalEnergy":5})";

/// A JSON array of rows that are separated by commas.
[[nodiscard]] inline std::string Array(const std::string& rows) { return "[" + rows + "]"; }

/// A helper with an empty data folder and a clock stopped at 14 November 2026, 10:30:15.
class ReportConversionFixture : public testing::Test {
 protected:
  ReportConversionFixture() {
    FakeClock::Set("2026-11-14 10:30:15");
    helper.collectionPath = folder.Path().c_str();
  }

  void WriteReport(const std::string& text) const { WriteWholeFile(reportPath, text); }
  void WriteStore(const std::string& text) const { WriteWholeFile(storePath, text); }
  [[nodiscard]] std::string StoreText() const { return ReadWholeFile(storePath); }

  /// Runs the conversion and returns what it wrote to the standard output.
  std::string Convert() {
    testing::internal::CaptureStdout();
    helper.ConvertPowerLogXmltoJson();
    return testing::internal::GetCapturedStdout();
  }

  /// Copies a program whose version resource has the name "Brook Browser" to the data folder.
  void CopyProgram(const std::wstring& name) const {
    const std::string sample = SampleProgram("one.exe");
    const std::wstring from(sample.begin(), sample.end());
    EXPECT_TRUE(CopyFileW(from.c_str(), folder.File(name).c_str(), /*bFailIfExists=*/TRUE));
  }

  /// `before`, then the device path of the data folder with a trailing separator.
  [[nodiscard]] std::string DeviceFolder(const std::string& before = "") {
    const std::string path(folder.Path().begin(), folder.Path().end());
    EXPECT_EQ(path.substr(0, 2), "C:");
    return before + helper.GetDevicePath("C:") + path.substr(2) + "\\";
  }

  /// The display name that the store gets from a report with one row of this application.
  [[nodiscard]] std::string DisplayNameOf(const std::string& appId) {
    WriteReport("<Report><Row AppId='" + appId + "' TimeStamp='2026-11-14:02:10:46'/></Report>");
    Convert();
    Zq::Gantry::Server::Services::Wattleaf::GenericDocument store;
    store.Parse(StoreText().c_str());
    EXPECT_EQ(store[0]["Name"].GetString(), appId);
    return store[0]["DisplayName"].GetString();
  }

  const TempFolder folder;
  const FakeClock clock;
  const LogCapture log;
  OpenHelper helper;
  const std::wstring reportPath = folder.Path() + L"\\Powerlog.xml";
  const std::wstring storePath = folder.Path() + L"\\Powerlog.json";
};

}  // namespace TestSupport
