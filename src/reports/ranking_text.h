#pragma once

#include <string>

#include "reports/ranking.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

// The members of an answer's entries, in this order.
inline constexpr char kAnswerNameKey[] = "Name";
inline constexpr char kAnswerIconKey[] = "Icon";
inline constexpr char kAnswerValueKey[] = "Value";

/// [{"Name":"...","Icon":"...","Value":37.5},...], without white space. Bytes that are no UTF-8
/// become U+FFFD. At a value that is not finite the text ends, behind the colon of its key.
std::wstring RankingText(const Ranking& ranking);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
