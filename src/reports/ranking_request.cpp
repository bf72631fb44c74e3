#include "reports/ranking_request.h"

#include "reports/decimal_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

// Kept on purpose: the first "?" ends the directory, also where it is part of one, as in "\\?\C:"
// (test RankingRequest.EndsTheDirectoryAtTheFirstQuestionMarkAlsoInsideAPath).
RankingRequest SplitRankingRequest(const std::wstring& input) {
  const auto separator = input.find(L'?');
  if (separator == std::wstring::npos) return {};
  return {input.substr(0, separator), DecimalNumber(input.c_str() + separator + 1)};
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
