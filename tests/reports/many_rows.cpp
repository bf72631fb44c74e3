#include "reports/many_rows.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>

#include "ledger/calendar.h"
#include "ledger/date_text.h"
#include "reports/power_log_format.h"
#include "reports/power_report.h"
#include "reports/power_store.h"
#include "reports/report_times.h"

namespace TestSupport {

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

constexpr std::size_t kApplications = 400;
constexpr std::int64_t kHalfHourSeconds = 1800;

template <typename... Arguments>
std::string Printed(const char* format, Arguments... arguments) {
  std::array<char, 512> text{};
  std::snprintf(text.data(), text.size(), format, arguments...);
  return text.data();
}

std::string AppId(std::size_t row, const char* separator) {
  const std::size_t application = row % kApplications;
  if (application % 2 == 1) return Printed("Package.Number%03zu_k3d8wq1zt0m6y", application);
  return Printed("%1$sDevice%1$sHarddiskVolume3%1$sProgram Files%1$sMaker%1$sapp%2$03zu.exe",
                 separator, application);
}

/// A round of the applications every half hour, back from the end: the report's on the hour and half
/// hour past the end, the store's a minute before.
std::string RowTime(std::size_t row, std::int64_t secondsBefore) {
  const auto round = static_cast<std::int64_t>(row / kApplications);
  const auto back = round * kHalfHourSeconds / 2 + secondsBefore;
  return FormatDateTime(LocalTimeOf(InstantOf(EndOfManyRows()) - back), kTimeStampFormat);
}

void Write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::binary) << text;
}

}  // namespace
}  // namespace TestSupport
