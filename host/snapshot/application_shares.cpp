#include "snapshot/application_shares.h"

#include <cmath>

#include "base/utf8_text.h"
#include "reports/ranking.h"

namespace WattleafHost {

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// Twenty shares of up to 100 in 32-bit float are off by less.
constexpr double kRoundingPercent = 0.001;

bool HasEnergy(const StoredRows& store) {
  std::int64_t total = 0;
  for (const StoredRow& row : store.rows) total += EnergyLow32(row.energy);
  return total != 0;
}

/// As the text of command 2 has it: bytes that are not UTF-8 become U+FFFD.
std::string ValidUtf8(const std::string& bytes) { return ToUtf8(FromUtf8(bytes)); }

}  // namespace

std::optional<ApplicationShares> TryShareOut(const StoredRows& store, const RankingMeans& means,
                                             unsigned int days) {
  if (!HasEnergy(store)) return std::nullopt;
  ApplicationShares shares;
  shares.days = days;
  double sum = 0.0;
  for (const TopAppEntry& entry : RankApplications(store, means.desktopApps, means.packagedApps,
                                                   means.iconDirectory, means.icons)) {
    const auto percent = static_cast<double>(entry.Value);
    shares.largest.push_back({ValidUtf8(entry.Name), ValidUtf8(entry.Icon), percent});
    sum += percent;
  }
  shares.everythingElsePercent = RestOfPercents(sum);
  return shares;
}

double RestOfPercents(double sum) {
  const double rest = 100.0 - sum;
  return std::fabs(rest) < kRoundingPercent ? 0.0 : rest;
}

}  // namespace WattleafHost
