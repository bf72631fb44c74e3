#pragma once

#include <string>
#include <vector>

#include "answer.h"

namespace WattleafHost {

/// Number, title, status and answer of each command, within 80 columns.
std::string AnswerTable(const std::vector<Answer>& answers);

/// The chart of a series with its heading; empty for an answer that is no series.
std::string AnswerChart(const Answer& answer);

}  // namespace WattleafHost
