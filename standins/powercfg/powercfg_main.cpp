// Stand-in for the operating system's POWERCFG: writes the reports of a simulated notebook. It
// takes the two command lines of tool_request.h and is told by the environment what to do
// (powercfg_settings.h). The measuring time of the second one is not waited for.

#include <windows.h>

#include <stdlib.h>
#include <time.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <ctime>

#include "powercfg_settings.h"
#include "report_model.h"
#include "report_text.h"
#include "tool_request.h"

namespace {

using namespace Standin;

constexpr int kNotUnderstood = 1;
constexpr int kNotWritten = 2;

/// A zone's name of the zone database would be taken as a POSIX text; without it the C library asks
/// the system. Whoever started this program has the same zone.
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

bool WriteFileWhole(const std::wstring& path, const std::string& bytes) {
  std::FILE* file = _wfopen(path.c_str(), L"wb");
  if (file == nullptr) return false;
  const std::size_t written = std::fwrite(bytes.data(), 1, bytes.size(), file);
  return std::fclose(file) == 0 && written == bytes.size();
}

int Run(const ToolRequest& request) {
  const PowercfgSettings settings = ReadPowercfgSettings();
  if (settings.status != 0) return settings.status;
  if (settings.output == ToolOutput::kNothing) return 0;
  const std::string bytes = MakeReport(request.report, settings);
  if (!WriteFileWhole(request.file, bytes)) return kNotWritten;
  if (!settings.truthPath.empty() && !WriteFileWhole(settings.truthPath, bytes)) return kNotWritten;
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
