#pragma once

#include <string>
#include <vector>

#include "answers/answer.h"

namespace WattleafHost {

/// Whether a command's result is a table: the series and the ranking.
[[nodiscard]] bool IsTable(unsigned int number);

/// The tables among the answers as comma-separated values, after a line of names. A ranking ends in
/// the share of everything else, which has no position.
[[nodiscard]] std::string AnswersCsv(const std::vector<Answer>& answers);

}  // namespace WattleafHost
