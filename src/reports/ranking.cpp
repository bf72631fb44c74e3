#include "reports/ranking.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <optional>

#include "base/byte_text.h"
#include "base/date_text.h"
#include "base/json_document.h"
#include "catalogue/app_identity.h"
#include "reports/power_store.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// A row of the period, in the document.
struct CountedRow {
  const rapidjson::Value& element;
  const rapidjson::Value& energy;
};

/// A row of an application that has a display name.
struct NamedRow {
  std::string appId;
  std::string displayName;
};

bool IsInPeriod(const rapidjson::Value& timeStamp, const ReportingPeriod& period) {
  DateTime time;
  return period.Includes(ParseDateTime(time, timeStamp.GetString(), kTimeStampFormat));
}

/// The times are read once for both passes, since reading them is most of the work.
std::vector<CountedRow> RowsOfPeriod(const rapidjson::Value& rows, const ReportingPeriod& period) {
  std::vector<CountedRow> counted;
  for (const rapidjson::Value& row : rows.GetArray()) {
    const rapidjson::Value* energy = TryNumberMember(row, kTotalEnergyKey);
    const rapidjson::Value* timeStamp = TryStringMember(row, kTimeStampKey);
    if (energy == nullptr || timeStamp == nullptr) continue;
    if (IsInPeriod(*timeStamp, period)) counted.push_back({row, *energy});
  }
  return counted;
}

// Kept on purpose: the total adds the low 32 bits of each energy, while the shares use all 64 (test
// RankApplications.ReadsEnergyIn32BitsForTheTotalAndIn64BitsForShares). The sum cannot overflow,
// since an array has fewer than 2^32 elements.
std::int64_t TotalEnergy(const std::vector<CountedRow>& rows) {
  std::int64_t total = 0;
  for (const CountedRow& row : rows) total += StoredEnergyLow32(row.energy);
  return total;
}

std::optional<NamedRow> TryNamedRow(const rapidjson::Value& element) {
  const rapidjson::Value* name = TryStringMember(element, kNameKey);
  const rapidjson::Value* displayName = TryStringMember(element, kDisplayNameKey);
  if (name == nullptr || displayName == nullptr) return std::nullopt;
  if (displayName->GetStringLength() == 0) return std::nullopt;
  return NamedRow{TextOf(*name), TextOf(*displayName)};
}

/// A desktop program is shown only if an installed one has exactly this name. Packaged applications
/// are always shown.
bool IsShown(const NamedRow& row, const DesktopApps& desktopApps) {
  if (!IsDevicePath(row.appId)) return true;
  const std::string& name = row.displayName;
  return desktopApps.contains(WidenBytes(name.data(), name.data() + name.size()));
}

/// In percent. Every step is done in 32-bit float.
float ShareOf(std::int64_t energy, std::int64_t total) {
  return static_cast<float>(energy) * 100.0F / static_cast<float>(total);
}

void AddShare(std::map<std::string, TopAppEntry>& rankedApps, const std::string& displayName,
              const std::string& icon, float share) {
  const auto [entry, isNew] = rankedApps.try_emplace(displayName);
  TopAppEntry& app = entry->second;
  if (isNew) app.Name = displayName;
  if (app.Icon.empty()) app.Icon = icon;
  app.Value = isNew ? share : app.Value + share;
}

bool RanksBefore(const TopAppEntry& left, const TopAppEntry& right) {
  if (std::isnan(left.Value)) return false;
  return std::isnan(right.Value) || left.Value > right.Value;
}

}  // namespace

Ranking RankApplications(const rapidjson::Value& rows, const ReportingPeriod& period,
                         const DesktopApps& desktopApps, const PackagedApps& packagedApps,
                         std::string_view iconDirectory, IconMaker& icons) {
  const std::vector<CountedRow> counted = RowsOfPeriod(rows, period);
  const std::int64_t total = TotalEnergy(counted);
  IconFinder iconFinder(packagedApps, iconDirectory, icons);
  std::map<std::string, TopAppEntry> rankedApps;
  for (const CountedRow& row : counted) {
    const std::optional<NamedRow> app = TryNamedRow(row.element);
    if (!app || !IsShown(*app, desktopApps)) continue;
    AddShare(rankedApps, app->displayName, iconFinder.Find(app->appId, app->displayName),
             ShareOf(StoredEnergy(row.energy), total));
  }

  Ranking ranking;
  for (auto& [name, entry] : rankedApps) ranking.push_back(std::move(entry));
  KeepLargest(ranking);
  return ranking;
}

void KeepLargest(Ranking& ranking) {
  std::sort(ranking.begin(), ranking.end(), RanksBefore);
  if (ranking.size() > kMostRankedApps) ranking.resize(kMostRankedApps);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
