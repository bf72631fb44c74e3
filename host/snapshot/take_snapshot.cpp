#include "snapshot/take_snapshot.h"

#include <windows.h>

#include <map>
#include <utility>

#include "base/byte_text.h"
#include "base/local_calendar.h"
#include "base/plain_file.h"
#include "base/utf8_text.h"
#include "catalogue/desktop_apps.h"
#include "catalogue/icon_export.h"
#include "days/sample_days.h"
#include "days/stored_ledger.h"
#include "files/data_copy.h"
#include "ledger/day_energy.h"
#include "platform/wmi/platform_probes.h"
#include "platform/wmi/support_decision.h"
#include "reports/power_store.h"
#include "snapshot/application_shares.h"
#include "snapshot/machine.h"
#include "snapshot/system_apps.h"

namespace WattleafHost {

namespace {

namespace WMI = Zq::Gantry::Server::Shared::WMI;
using namespace Zq::Gantry::Server::Services::Wattleaf;

/// Copies the days of the ledger into `inputs`, or says why there are none.
void ReadLedger(DataCopy& copy, const DateTime& today, SnapshotInputs& inputs) {
  StoredLedger ledger = ReadStoredLedger(copy, OldestDay(today));
  if (ledger.state == LedgerState::kRead) {
    inputs.ledger = std::move(ledger.days);
  } else {
    inputs.ledgerProblem = ledger.state == LedgerState::kAbsent ? kNoLedger : kLedgerUnreadable;
  }
}

/// The energy by hour of one day, as command 4 works it out.
std::map<int, float> ReadHours(DataCopy& copy, const DateTime& day) {
  copy.AddSamplesOf(day);
  SampleDays samples(copy);
  return HourlyEnergyWh(day, samples.Reader());
}

/// Makes no icons.
class NoIcons final : public IconMaker {
 public:
  std::string ExportAppIcon(const std::string&, const IconFile&) override { return {}; }
  bool CopyLogo(const std::string&, const std::string&) override { return false; }
};

std::optional<ApplicationShares> Rank(const StoredRows& store, const SnapshotRequest& request) {
  DesktopApps desktopApps;
  AddInstalledPrograms(desktopApps);
  if (request.iconFolder.empty()) {
    const PackagedApps none;
    NoIcons icons;
    return TryShareOut(store, {desktopApps, none, {}, icons}, request.days);
  }
  static_cast<void>(CreateDirectoryTree(request.iconFolder));
  const PackagedApps packagedApps = FindPackagedApps();
  SystemIconMaker icons(SystemDrivePath());
  const std::wstring& folder = request.iconFolder;
  const std::string narrow = NarrowChars(folder.data(), folder.data() + folder.size());
  return TryShareOut(store, {desktopApps, packagedApps, narrow, icons}, request.days);
}

void ReadApplications(DataCopy& copy, const DateTime& now, const SnapshotRequest& request,
                      SnapshotInputs& inputs) {
  if (!copy.Add(kPowerStoreFileName)) {
    inputs.applicationsProblem =
        copy.FindLeftOut(kPowerStoreFileName) ? kStoreUnreadable : kNoStore;
    return;
  }
  const ReportingPeriod period(now, static_cast<std::int32_t>(request.days));
  const auto store = TryReadPowerStore(copy.File(kPowerStoreFileName), period);
  if (!store) {
    inputs.applicationsProblem = kStoreUnreadable;
    return;
  }
  inputs.applications = Rank(*store, request);
  if (!inputs.applications) inputs.applicationsProblem = kNoEnergy;
}

}  // namespace

Snapshot TakeSnapshot(const SnapshotRequest& request) {
  SnapshotInputs inputs;
  inputs.hostVersion = WATTLEAF_HOST_VERSION;
  inputs.machine = ComputerName();
  inputs.zone = ZoneName();
  inputs.now = CurrentInstant();
  inputs.supportState =
      WMI::DecidePlatformSupport(WMI::ReadBiosPlatformFlag, WMI::FindCarbonSupportOemString);

  const DateTime now = LocalTimeOf(inputs.now);
  DateTime today = now;
  today.tm_hour = 0;
  today.tm_min = 0;
  today.tm_sec = 0;
  DataCopy copy(request.dataFolder);
  ReadLedger(copy, today, inputs);
  inputs.yesterdayWh = ReadHours(copy, ShiftKeepingHour(now, -kSecondsPerDay));
  inputs.todayWh = ReadHours(copy, now);
  ReadApplications(copy, now, request, inputs);
  return MakeSnapshot(inputs);
}

}  // namespace WattleafHost
