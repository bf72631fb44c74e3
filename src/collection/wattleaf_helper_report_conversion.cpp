#include <io.h>

#include <cstdio>

#include "base/calendar.h"
#include "base/date_text.h"
#include "base/plain_file.h"
#include "catalogue/app_identity.h"
#include "catalogue/file_description.h"
#include "collection/power_store_access.h"
#include "collection/wattleaf_helper.h"
#include "reports/power_report.h"
#include "reports/power_store.h"
#include "reports/report_tool.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

std::string LogTimeNow() { return FormatLogTime(*GetCurrentDateTime()); }

}  // namespace

void WattleafHelper::ConvertPowerLogXmltoJson() {
  const std::wstring folder = std::wstring(collectionPath) + L"\\";
  const std::wstring reportPath = folder + kPowerReportFileName;
  const std::wstring storePath = folder + kPowerStoreFileName;
  const std::string devicePrefix = GetDevicePath(kSystemDrive);
  const ReportingPeriod period(*GetCurrentDateTime(), kPowerStoreDays);

  PowerLog log;
  if (IsKnownPlainFile(reportPath)) {
    std::printf("XML parsing started at :%s\n", LogTimeNow().c_str());
    const auto packagedApps = uwpApps.Current();
    DisplayNames names(devicePrefix, *packagedApps, &GetFileDescription);
    ReadPowerReport(reportPath, period, names, log);
    _wunlink(reportPath.c_str());
  }
  std::printf("XML parsing completed :%s\n", LogTimeNow().c_str());

  if (const auto store = LoadPowerStore(storePath, storeMutex))
    MergePowerStore(*store, period, log);
  SavePowerStore(storePath, PowerStoreDocument(log), storeMutex);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
