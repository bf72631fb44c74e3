#include "command_input.h"

#include "ranking.h"
#include "service/command_table.h"

namespace WattleafHost {

std::string InputOf(unsigned int number, const Options& options) {
  using Zq::Gantry::Server::Services::Wattleaf::Command;
  if (options.input) return *options.input;
  if (number != static_cast<unsigned int>(Command::kTopApplications)) return {};
  return RankingRequest(options.iconFolder, options.days);
}

}  // namespace WattleafHost
