#pragma once

#include <gtest/gtest.h>

#include <string>

#include "base/scratch_folder.h"
#include "reports/log_rows.h"
#include "reports/power_report.h"
#include "reports/report_times.h"

namespace TestSupport {

/// Reads reports at 2026-11-14 10:30:15. Every executable has the description "File"; a test adds
/// packages as it needs them.
class ReportReader : public testing::Test {
 protected:
  using PowerLog = Zq::Gantry::Server::Services::Wattleaf::PowerLog;

  void Read(const std::string& bytes) {
    using namespace Zq::Gantry::Server::Services::Wattleaf;
    const ScratchFolder folder;
    WriteBytes(folder.File("report.xml"), bytes);
    DisplayNames names("\\Device\\C", packages, [](const std::string&) { return "File"; });
    ReadPowerReport(folder.File("report.xml").wstring(),
                    ReportingPeriod(At("2026-11-14:10:30:15"), 30), names, log);
  }

  /// The rows of the log, each as a line "name|display name|time|energy".
  [[nodiscard]] std::string Rows() const {
    using namespace Zq::Gantry::Server::Services::Wattleaf;
    std::string text;
    for (const PowerLogRecord& row : RowsOf(log)) {
      text += std::string(row.Name) + "|" + std::string(row.DisplayName) + "|" +
              FormatDateTime(row.TimeStamp.Fields(), kTimeStampFormat) + "|" +
              std::to_string(row.TotalEnergy) + "\n";
    }
    return text;
  }

  Zq::Gantry::Server::Services::Wattleaf::PackagedApps packages;
  PowerLog log;
};

/// An element with an identity, a time of 14 November 2026 such as "02:00:00", and content.
[[nodiscard]] inline std::string Row(const std::string& appId, const std::string& time,
                                     const std::string& inside) {
  return "<Row AppId=\"" + appId + "\" TimeStamp=\"2026-11-14:" + time + "\">" + inside + "</Row>";
}

[[nodiscard]] inline std::string Energy(const std::string& value) {
  return "<TotalEnergyConsumption Value=\"" + value + "\"/>";
}

[[nodiscard]] inline std::string Report(const std::string& rows) {
  return "<Report>" + rows + "</Report>";
}

}  // namespace TestSupport
