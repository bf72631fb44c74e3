// Stand-in for the operating system's POWERCFG: writes the reports of a simulated notebook. It
// understands the two command lines of tool_request.h; environment variables choose what it does
// (PowercfgSettings). It does not wait for the duration of the second command line.

#include <windows.h>

#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "environment.h"
#include "report_model.h"
#include "report_text.h"
#include "tool_request.h"
#include "whole_file.h"

namespace {

using namespace Standin;

constexpr int kNotUnderstood = 1;
constexpr int kNotWritten = 2;
constexpr std::int64_t kDefaultDays = 60;
constexpr std::int64_t kMostDays = 10'000;

enum class ToolOutput { kReport, kNothing, kBroken };

struct PowercfgSettings {
  std::uint64_t seed;  // WATTLEAF_POWERCFG_SEED; the report is UTF-16 if even, UTF-8 if odd
  int days;            // WATTLEAF_POWERCFG_DAYS
  std::int64_t now;    // WATTLEAF_POWERCFG_NOW in seconds since 1970; default: the clock
  int status;          // WATTLEAF_POWERCFG_STATUS: other than 0, ends with it and writes nothing
  ToolOutput output;   // WATTLEAF_POWERCFG_OUTPUT: "report", "nothing" (exit status 0), "broken"
  std::string only;    // WATTLEAF_POWERCFG_ONLY; see ReportSettings
  std::wstring truthPath;  // WATTLEAF_POWERCFG_TRUTH: file for a copy of the report; empty: no copy
};

ToolOutput ReadOutput() {
  const std::wstring text = ReadVariable(L"WATTLEAF_POWERCFG_OUTPUT");
  if (text == L"nothing") return ToolOutput::kNothing;
  return text == L"broken" ? ToolOutput::kBroken : ToolOutput::kReport;
}

PowercfgSettings ReadSettings() {
  PowercfgSettings settings{};
  settings.seed = static_cast<std::uint64_t>(ReadNumberVariable(L"WATTLEAF_POWERCFG_SEED", 1));
  settings.days = static_cast<int>(std::clamp<std::int64_t>(
      ReadNumberVariable(L"WATTLEAF_POWERCFG_DAYS", kDefaultDays), 0, kMostDays));
  settings.now = ReadNumberVariable(L"WATTLEAF_POWERCFG_NOW", _time64(nullptr));
  settings.status = static_cast<int>(ReadNumberVariable(L"WATTLEAF_POWERCFG_STATUS", 0));
  settings.output = ReadOutput();
  settings.only = ReadAsciiVariable(L"WATTLEAF_POWERCFG_ONLY");
  settings.truthPath = ReadVariable(L"WATTLEAF_POWERCFG_TRUTH");
  return settings;
}

/// The C library would read a name of the zone database in TZ as a POSIX text. Without TZ it uses
/// the system's zone, which is the zone of the program that started this one.
void UseSystemZone() {
  const char* zone = std::getenv("TZ");
  if (zone != nullptr && std::strchr(zone, '/') != nullptr) _putenv("TZ=");
  _tzset();
}

std::string LocalTimeText(std::int64_t instant) {
  const __time64_t seconds = instant;
  std::tm fields{};
  _localtime64_s(&fields, &seconds);
  std::array<char, 64> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d:%H:%M:%S", &fields)};
}

std::string DevicePrefix() {
  std::array<char, 1024> path{};
  QueryDosDeviceA("C:", path.data(), static_cast<DWORD>(path.size() - 1));
  return path.data();
}

std::string MakeReport(ToolReport report, const PowercfgSettings& settings) {
  const auto encoding = settings.seed % 2 == 0 ? ReportEncoding::kUtf16 : ReportEncoding::kUtf8;
  std::string text =
      report == ToolReport::kEnergyProblems
          ? ProblemsReportText(encoding)
          : EnergyReportText(MakeReportRows({settings.seed, settings.days, settings.now,
                                             DevicePrefix(), &LocalTimeText, settings.only}),
                             encoding);
  if (settings.output == ToolOutput::kBroken) text = BrokenOff(text);
  return FileBytes(text, encoding);
}

int Run(const ToolRequest& request) {
  const PowercfgSettings settings = ReadSettings();
  if (settings.status != 0) return settings.status;
  if (settings.output == ToolOutput::kNothing) return 0;
  const std::string bytes = MakeReport(request.report, settings);
  if (!TryWriteWholeFile(request.file, bytes)) return kNotWritten;
  if (!settings.truthPath.empty() && !TryWriteWholeFile(settings.truthPath, bytes))
    return kNotWritten;
  return 0;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  UseSystemZone();
  const auto request = TryReadRequest({arguments + (count > 0 ? 1 : 0), arguments + count});
  if (!request) {
    std::puts(
        "Stand-in. Usage: POWERCFG /SRUMUTIL /OUTPUT <file> /XML\n"
        "                 POWERCFG /ENERGY /OUTPUT <file> /DURATION <seconds> /XML");
    return kNotUnderstood;
  }
  return Run(*request);
}
