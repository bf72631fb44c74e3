// A console host for integrators: loads WattleafService.dll as the real host does and runs its
// commands.

#include <windows.h>

#include <shellapi.h>

#include <exception>
#include <string>
#include <variant>
#include <vector>

#include "base/utf8_text.h"
#include "command_line/console.h"
#include "command_line/options.h"
#include "doctor/doctor.h"
#include "explain/explain.h"
#include "export/export.h"
#include "export/metrics.h"
#include "files/file_failure.h"
#include "platform/win32/owners.h"
#include "report/report.h"
#include "serve/subcommands.h"

namespace {

/// The arguments after the program's name, as UTF-8. From the system, since the C library's are in
/// the code page, and its start-up code may have expanded "*" and "?", which command 2 needs.
std::vector<std::string> CommandLineArguments() {
  int count = 0;
  wchar_t** texts = CommandLineToArgvW(GetCommandLineW(), &count);
  const Zq::Gantry::Platform::UniqueLocalBlock block(texts);
  std::vector<std::string> arguments;
  for (int i = 1; texts != nullptr && i < count; ++i) {
    arguments.push_back(Zq::Gantry::Server::Services::Wattleaf::ToUtf8(texts[i]));
  }
  return arguments;
}

int Run(const WattleafHost::Options& options) {
  try {
    return std::visit([&](const auto& request) { return WattleafHost::Run(request, options); },
                      options.request);
  } catch (const WattleafHost::FileFailure& failure) {
    WattleafHost::Notice(failure.what());
    return WattleafHost::kFileFailed;
  } catch (const std::exception& failure) {
    WattleafHost::Notice(failure.what());
    return WattleafHost::kNoService;
  }
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): only without memory for its own arguments
int main() {
  WattleafHost::UseSystemZone();
  WattleafHost::PrepareConsole();
  const auto request = WattleafHost::ReadOptions(CommandLineArguments());
  if (const auto* finished = std::get_if<WattleafHost::Finished>(&request)) {
    return finished->exitStatus;
  }
  WattleafHost::ReserveStandardOutput();
  return Run(std::get<WattleafHost::Options>(request));
}
