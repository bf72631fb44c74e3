#pragma once

#include <cstdint>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// What a client asks of the ranking.
struct RankingRequest {
  std::wstring iconDirectory;
  std::int32_t days = 0;
};

/// Splits "directory?days" at the first "?". Without one the directory is empty and the days are 0;
/// days that are no number are 0 as well.
RankingRequest SplitRankingRequest(const std::wstring& input);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
