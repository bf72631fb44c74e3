#pragma once

#include <cstdint>
#include <string>

#include "reports/ranking.h"

// The request and the answer of command 2; docs/formats/answers.md.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// A client's request for the ranking.
struct RankingRequest {
  std::wstring iconDirectory;  ///< where the client wants the icons; may be empty
  std::int32_t days = 0;       ///< how far back, from now; may be negative
};

/// Splits "directory?days" at the first "?". Without one, the directory is empty and the days are
/// 0. Days that are not a number are 0 as well.
[[nodiscard]] RankingRequest SplitRankingRequest(const std::wstring& input);

// The members of an answer's entries, in this order.
inline constexpr char kAnswerNameKey[] = "Name";
inline constexpr char kAnswerIconKey[] = "Icon";
inline constexpr char kAnswerValueKey[] = "Value";

/// [{"Name":"...","Icon":"...","Value":37.5},...], without white space. Bytes that are not UTF-8
/// become U+FFFD. At a value that is not finite the text ends, right after the colon of its key.
[[nodiscard]] std::wstring RankingText(const Ranking& ranking);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
