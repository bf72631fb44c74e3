#pragma once

#include <string>
#include <vector>

#include "answer.h"
#include "ranking_table.h"

namespace WattleafHost {

/// Number, title, status and answer of each command, within 80 columns.
std::string AnswerTable(const std::vector<Answer>& answers);

/// The chart of a series with its heading; empty for an answer that is no series.
std::string AnswerChart(const Answer& answer);

/// The applications of command 2 as table and bars, or its text as it stands where that is no list
/// of applications. Empty for the other commands and for an empty list.
std::string AnswerRanking(const Answer& answer, const std::string& days,
                          const IsThere& iconIsThere);

}  // namespace WattleafHost
