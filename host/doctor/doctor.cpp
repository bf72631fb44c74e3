#include "doctor/doctor.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "base/calendar.h"
#include "base/date_text.h"
#include "base/local_calendar.h"
#include "base/utf8_text.h"
#include "catalogue/file_description.h"
#include "catalogue/installed_apps.h"
#include "command_line/console.h"
#include "command_line/places.h"
#include "days/sample_days.h"
#include "days/stored_ledger.h"
#include "doctor/collector_facts.h"
#include "doctor/diagnosis.h"
#include "doctor/place_facts.h"
#include "doctor/power_facts.h"
#include "files/data_copy.h"
#include "ledger/ledger_file.h"
#include "ledger/sample_files.h"
#include "log/own_log.h"
#include "platform/wmi/platform_probes.h"
#include "reports/report_commands.h"
#include "reports/report_runner.h"
#include "simulated_calls.h"
#include "snapshot/system_apps.h"
#include "text/local_moment.h"

namespace WattleafHost {

namespace {

namespace WMI = Zq::Gantry::Server::Shared::WMI;
using namespace Zq::Gantry::Server::Services::Wattleaf;

constexpr wchar_t kCollectorFileName[] = L"TelemetryZQXWrapper.dll";
constexpr int kDays = 7;

/// The answer of one probe, and its warnings.
template <typename Probe>
bool Ask(Probe probe, std::vector<std::string>& warnings) {
  OwnLogLines log;
  const bool answer = probe();
  warnings = log.Lines();
  return answer;
}

PlatformFacts ReadPlatformFacts() {
  PlatformFacts facts;
  facts.firmwareFlag = Ask(WMI::ReadBiosPlatformFlag, facts.firmwareWarnings);
  facts.oemMarker = Ask(WMI::FindCarbonSupportOemString, facts.oemWarnings);
  return facts;
}

/// Where the command interpreter finds the tool; empty if nowhere.
std::wstring FindTool() {
  std::array<wchar_t, MAX_PATH + 1> path{};
  const DWORD length = SearchPathW(nullptr, L"POWERCFG", L".exe", static_cast<DWORD>(path.size()),
                                   path.data(), nullptr);
  return length < path.size() ? std::wstring(path.data(), length) : std::wstring();
}

/// Runs the tool as a pass does, with a folder of the copy in the place of the data folder.
int RunToolIn(const std::wstring& folder) {
  std::array<wchar_t, MAX_PATH + 1> before{};
  GetCurrentDirectoryW(static_cast<DWORD>(before.size()), before.data());
  const int status = RunReportTool(folder.c_str(), kPowerReportCommand);
  // Back, since the folder cannot be removed while it is the current one.
  SetCurrentDirectoryW(before.data());
  return status;
}

ToolFacts ReadToolFacts(const DataCopy& copy, bool run, const DateTime& now, DisplayNames& names) {
  ToolFacts facts;
  facts.path = ToUtf8(FindTool());
  if (facts.path.empty() || !run) return facts;
  const std::wstring folder = copy.File(L"tool");
  CreateDirectoryW(folder.c_str(), /*security=*/nullptr);
  facts.wasRun = true;
  facts.status = RunToolIn(folder);
  const std::wstring report = folder + L"\\" + kPowerReportFileName;
  if (GetFileAttributesW(report.c_str()) != INVALID_FILE_ATTRIBUTES) {
    facts.report = ReadReportFacts(report, now, names);
  }
  return facts;
}

ReportFacts ReadLeftReport(DataCopy& copy, const DateTime& now, DisplayNames& names) {
  if (copy.Add(kPowerReportFileName)) {
    return ReadReportFacts(copy.File(kPowerReportFileName), now, names);
  }
  ReportFacts facts;
  if (copy.FindLeftOut(kPowerReportFileName)) facts.state = ReportFacts::State::kUnreadable;
  return facts;
}

StoreFacts ReadStoreFacts(DataCopy& copy, const std::wstring& folder, const DateTime& now) {
  StoreFacts facts;
  facts.place = ReadPlace(folder + L"\\" + kPowerStoreFileName);
  if (!copy.Add(kPowerStoreFileName)) {
    const bool isHidden = copy.FindLeftOut(kPowerStoreFileName).has_value();
    if (isHidden && facts.place.state == PlaceFacts::State::kPlain) {
      facts.place.state = PlaceFacts::State::kUnreadable;
    }
    return facts;
  }
  const ReportingPeriod period(now, kPowerStoreDays);
  const auto store = TryReadPowerStore(copy.File(kPowerStoreFileName), period);
  facts.isRead = store.has_value();
  if (store) CountStoreRows(*store, facts);
  return facts;
}

/// A value of 0.0 means that nothing is booked.
std::size_t BookedDays(const StoredLedger& ledger) {
  return static_cast<std::size_t>(
      std::ranges::count_if(ledger.days, [](const auto& day) { return day.second != 0.0F; }));
}

DayFacts ReadDayFacts(const DateTime& day, const DateTime& today, const StoredLedger& ledger,
                      const DataCopy& copy) {
  SampleDays samples(copy);
  const DayExplanation explanation = ExplainDay(day, samples.Reader());
  DayFacts facts;
  facts.file = samples.Files().front();
  facts.counted = static_cast<std::size_t>(
      std::ranges::count_if(explanation.samples, &ExplainedSample::isCounted));
  const auto count = [&explanation](Booking booking) {
    return static_cast<std::size_t>(
        std::ranges::count(explanation.intervals, booking, &ExplainedInterval::booking));
  };
  facts.booked = count(Booking::kBooked);
  facts.gaps = count(Booking::kGap);
  facts.largestGapSeconds = LargestGapSeconds(explanation.samples);
  facts.energyWh = explanation.energyWh;
  facts.bookedWh = ledger.Find(day);
  facts.relation = CompareWithLedger(day, today, ledger.state, facts.bookedWh, explanation);
  return facts;
}

std::vector<DayFacts> ReadDays(DataCopy& copy, const DateTime& today, const StoredLedger& ledger) {
  for (int back = -1; back <= kDays; ++back) {
    copy.AddSamplesOf(ShiftKeepingHour(today, -back * kSecondsPerDay));
  }
  std::vector<DayFacts> days;
  days.reserve(kDays);
  for (int back = 0; back < kDays; ++back) {
    days.push_back(
        ReadDayFacts(ShiftKeepingHour(today, -back * kSecondsPerDay), today, ledger, copy));
  }
  return days;
}

/// How many days the newest sample file of the next weeks or the last booked day is after today.
int DaysAhead(const std::wstring& folder, const DateTime& today, const StoredLedger& ledger) {
  constexpr int kMostDays = 31;
  int ahead = 0;
  for (int days = 1; days <= kMostDays; ++days) {
    const DateTime day = ShiftKeepingHour(today, days * kSecondsPerDay);
    const bool hasFile =
        GetFileAttributesW(EncryptedSamplePath(folder, day).c_str()) != INVALID_FILE_ATTRIBUTES;
    if (hasFile || ledger.Find(day)) ahead = days;
  }
  return ahead;
}

MachineFacts ReadMachine(const DoctorRequest& request) {
  MachineFacts facts;
  facts.version = WATTLEAF_HOST_VERSION;
  facts.now = IsoTime(CurrentInstant());
  const DateTime today = *GetCurrentDate();
  const DateTime now = *GetCurrentDateTime();
  const std::wstring folder = FromUtf8(kDataFolder);
  // Read before the collector may be started, which writes samples.
  DataCopy copy(folder);
  facts.folder = {kDataFolder, ReadPlace(folder), ReadWriters(folder)};
  const StoredLedger ledger = ReadStoredLedger(copy);
  facts.ledger = {ReadPlace(folder + L"\\" + kLedgerFileName), ledger.state, BookedDays(ledger)};
  facts.days = ReadDays(copy, today, ledger);
  facts.daysAhead = DaysAhead(folder, today, ledger);
  facts.store = ReadStoreFacts(copy, folder, now);

  facts.platform = ReadPlatformFacts();
  const PackagedApps packagedApps = FindPackagedApps();
  DisplayNames names(SystemDrivePath(), packagedApps, &GetFileDescription);
  facts.leftReport = ReadLeftReport(copy, now, names);
  facts.tool = ReadToolFacts(copy, request.runTool, now, names);
  facts.collector =
      ReadCollectorFacts(ProgramFolder() + L"\\" + kCollectorFileName, request.startCollector);
  return facts;
}

}  // namespace

int Run(const DoctorRequest& request, const Options& options) {
  const Standin::SimulatedCalls simulated(GetModuleHandleW(nullptr), options.simulateCalls);
  const MachineFacts facts = ReadMachine(request);
  const auto findings = Diagnose(facts);
  Print(options.json ? ToJson(facts, findings) + "\n" : ToText(facts, findings));
  return CanMeasure(findings) ? kDone : kCommandFailed;
}

}  // namespace WattleafHost
