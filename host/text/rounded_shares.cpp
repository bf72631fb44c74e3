#include "text/rounded_shares.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>

namespace WattleafHost {

namespace {

constexpr std::int64_t kWhole = 10000;
/// Far more than 100 %: hostile energies may be negative, and then others exceed the sum.
constexpr double kLargestPercent = 1e9;

bool AddUp(const std::vector<double>& percents) {
  const bool areFinite = std::all_of(percents.begin(), percents.end(), [](double percent) {
    return std::fabs(percent) <= kLargestPercent;
  });
  return areFinite && std::fabs(std::accumulate(percents.begin(), percents.end(), -100.0)) <= 0.005;
}

}  // namespace

std::optional<std::vector<std::int64_t>> TryRoundShares(const std::vector<double>& percents) {
  if (!AddUp(percents)) return std::nullopt;
  std::vector<std::int64_t> hundredths;
  hundredths.reserve(percents.size());
  for (const double percent : percents) {
    hundredths.push_back(static_cast<std::int64_t>(std::floor(percent * 100.0)));
  }
  std::vector<std::size_t> byLoss(percents.size());
  std::iota(byLoss.begin(), byLoss.end(), std::size_t{0});
  const auto loss = [&](std::size_t i) {
    return percents[i] * 100.0 - static_cast<double>(hundredths[i]);
  };
  std::stable_sort(byLoss.begin(), byLoss.end(),
                   [&](std::size_t a, std::size_t b) { return loss(a) > loss(b); });
  std::vector<std::int64_t> rounded = hundredths;
  std::int64_t missing =
      kWhole - std::accumulate(hundredths.begin(), hundredths.end(), std::int64_t{0});
  for (const std::size_t i : byLoss) {
    if (missing-- > 0) ++rounded[i];
  }
  return rounded;
}

}  // namespace WattleafHost
