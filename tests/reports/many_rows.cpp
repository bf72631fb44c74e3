#include "reports/many_rows.h"

#include <fstream>

#include "base/date_text.h"
#include "base/local_calendar.h"
#include "reports/power_report.h"
#include "reports/power_store.h"
#include "reports/report_commands.h"
#include "reports/report_times.h"

namespace TestSupport {

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

constexpr std::size_t kApplications = 400;
constexpr std::int64_t kSecondsBetweenRounds = 2400;

std::string NumberOf(std::size_t row) { return std::to_string(row % kApplications); }

/// `separator` is a backslash, doubled in JSON.
std::string AppId(std::size_t row, const std::string& separator) {
  const std::string number = NumberOf(row);
  if (row % 2 == 1) return "Package.Number" + number + "_k3d8wq1zt0m6y";
  std::string path;
  for (const char* part : {"Device", "HarddiskVolume3", "Program Files", "Maker"}) {
    path += separator + part;
  }
  return path + separator + "app" + number + ".exe";
}

/// Row 0 to 399 have the time `lastInstant`, one row for each application. Each further 400 rows
/// are 40 minutes older.
std::string RowTime(std::size_t row, std::int64_t lastInstant) {
  const auto round = static_cast<std::int64_t>(row / kApplications);
  return FormatDateTime(LocalTimeOf(lastInstant - round * kSecondsBetweenRounds), kTimeStampFormat);
}

void Write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace

DateTime EndOfManyRows() { return At("2026-11-14:10:30:15"); }

std::string ReportOfManyRows(std::size_t count) {
  const std::int64_t last = InstantOf(EndOfManyRows());
  std::string text = "<?xml version=\"1.0\"?>\n<Report>\n";
  for (std::size_t row = 0; row < count; ++row) {
    text += "<Row AppId=\"" + AppId(row, "\\") + "\" TimeStamp=\"" + RowTime(row, last) +
            "\"><TotalEnergyConsumption Value=\"" + std::to_string(row) + "\"/></Row>\n";
  }
  return text + "</Report>\n";
}

std::string StoreOfManyRows(std::size_t count) {
  const std::int64_t last = InstantOf(EndOfManyRows()) - 60;
  std::string text = "[";
  for (std::size_t row = 0; row < count; ++row) {
    if (row != 0) text += ',';
    text += R"({"Name":")" + AppId(row, "\\\\") + R"(","DisplayName":"Application )" +
            NumberOf(row) + R"(","TimeStamp":")" + RowTime(row, last) + R"(","TotalEnergy":)" +
            std::to_string(row) + "}";
  }
  return text + "]";
}

void WriteManyRows(const std::filesystem::path& folder, std::size_t count) {
  Write(folder / kPowerReportFileName, ReportOfManyRows(count));
  Write(folder / kPowerStoreFileName, StoreOfManyRows(count));
}

// As in the service, each step releases its memory before the next.
std::size_t FoldReport(const std::filesystem::path& folder) {
  const ReportingPeriod period(EndOfManyRows(), kPowerStoreDays);
  PowerLog log;
  {
    const PackagedApps packages{{"Package.Number", {"Package", ""}}};
    DisplayNames names("\\Device\\HarddiskVolume3", packages,
                       [](const std::string&) { return "Application"; });
    ReadPowerReport((folder / kPowerReportFileName).wstring(), period, names, log);
  }
  const std::wstring storePath = (folder / kPowerStoreFileName).wstring();
  if (const auto store = TryReadPowerStore(storePath, period)) MergePowerStore(*store, log);
  static_cast<void>(WritePowerStore(storePath, log));
  return log.Size();
}

}  // namespace TestSupport
