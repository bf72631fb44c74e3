#pragma once

#include <functional>
#include <string>
#include <vector>

#include "answers/answer.h"

namespace WattleafHost {

/// Whether a file exists; the path is UTF-8.
using FileExists = std::function<bool(const std::string& path)>;

/// Number, title, status and answer of each command, within 80 columns.
[[nodiscard]] std::string AnswerTable(const std::vector<Answer>& answers);

/// The chart of a series with its heading; empty for an answer that is not a series.
[[nodiscard]] std::string AnswerChart(const Answer& answer);

/// The applications of command 2 as RankingTable prints them, or the text itself if it is not a
/// list of applications. Empty for the other commands and for an empty list.
[[nodiscard]] std::string AnswerRanking(const Answer& answer, const std::string& days,
                                        const FileExists& fileExists);

/// Rank, name, share and icon of each application, then the shares as bars; within 80 columns.
/// `days` is for the heading. Empty for an empty ranking.
[[nodiscard]] std::string RankingTable(const Ranking& ranking, const std::string& days,
                                       const FileExists& fileExists);

}  // namespace WattleafHost
