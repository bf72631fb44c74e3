// A console host for integrators: loads WattleafService.dll the way the real host does and asks its
// commands.

#include <exception>

#include "command_line.h"
#include "console.h"
#include "exit_status.h"
#include "options.h"
#include "serve_once.h"
#include "single_command.h"

namespace {

int Run(const WattleafHost::Options& options) {
  try {
    return options.oneCommand ? WattleafHost::RunSingleCommand(options)
                              : WattleafHost::ServeOnce(options);
  } catch (const std::exception& failure) {
    WattleafHost::Notice(failure.what());
    return WattleafHost::kNoService;
  }
}

}  // namespace

int main() {
  WattleafHost::UseSystemZone();
  WattleafHost::PrepareConsole();
  const auto request = WattleafHost::ReadOptions(WattleafHost::CommandLineArguments());
  if (const auto* finished = std::get_if<WattleafHost::Finished>(&request)) {
    return finished->exitStatus;
  }
  WattleafHost::KeepOutputToOurselves();
  return Run(std::get<WattleafHost::Options>(request));
}
