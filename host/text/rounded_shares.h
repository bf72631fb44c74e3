#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace WattleafHost {

/// The percentages as whole hundredths that add up to 100.00 %: each is rounded down, and the
/// hundredths that are then missing go to those that lost most. Nothing unless all are finite and
/// add up to 100 within half a hundredth.
[[nodiscard]] std::optional<std::vector<std::int64_t>> TryRoundShares(
    const std::vector<double>& percents);

}  // namespace WattleafHost
