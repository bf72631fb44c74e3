#include "base/byte_text.h"
#include "base/calendar.h"
#include "base/plain_file.h"
#include "catalogue/app_identity.h"
#include "catalogue/icon_export.h"
#include "collection/power_store_access.h"
#include "collection/wattleaf_helper.h"
#include "reports/power_store.h"
#include "reports/ranking.h"
#include "reports/ranking_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Narrowed for the narrow calls that write icons; what lies above the low byte is lost.
std::string NarrowDirectory(const std::wstring& directory) {
  return NarrowChars(directory.data(), directory.data() + directory.size());
}

/// A zero would cut the path short and make another folder than the one that was asked for.
void MakeIconDirectory(const std::wstring& directory) {
  if (directory.empty() || directory.find(L'\0') != std::wstring::npos) return;
  static_cast<void>(CreateDirectoryTree(directory));
}

}  // namespace

// Whatever fails, also a status that cannot be had, leaves the result as it was, without a line.
void WattleafHelper::GetTop20PowerApps(std::wstring& request, std::wstring& result) {
  try {
    const RankingRequest wanted = SplitRankingRequest(request);
    MakeIconDirectory(wanted.iconDirectory);
    const std::string devicePrefix = GetDevicePath(kSystemDrive);
    const ReportingPeriod period(*GetCurrentDateTime(), wanted.days);

    const std::wstring path = std::wstring(collectionPath) + L"\\" + kPowerStoreFileName;
    const auto store = LoadPowerStore(path, storeMutex);
    if (store == nullptr || !store->IsArray()) return;

    SystemIconMaker icons(devicePrefix);
    const auto desktopApps = win32Apps.Current();
    const auto packagedApps = uwpApps.Current();
    result = RankingText(RankApplications(*store, period, *desktopApps, *packagedApps,
                                          NarrowDirectory(wanted.iconDirectory), icons));
  } catch (...) {
    // The client asks again.
  }
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
