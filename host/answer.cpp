#include "answer.h"

#include <array>
#include <cstdio>

#include "service/command_table.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Server::Services::Wattleaf::Command;
using Zq::Gantry::Server::Services::Wattleaf::kNoResult;
using Zq::Gantry::Server::Services::Wattleaf::kUnknownCommand;

bool NeedsReport(unsigned int number) {
  return number == static_cast<unsigned int>(Command::kTopApplications);
}

}  // namespace

std::string StatusText(int status) {
  if (status == 0) return "0";
  std::array<char, 16> buffer{};
  std::snprintf(buffer.data(), buffer.size(), "0x%08x", static_cast<unsigned int>(status));
  return buffer.data();
}

std::string StatusMeaning(const Answer& answer) {
  if (answer.status == kUnknownCommand) return "unknown command";
  if (answer.status != kNoResult) return "unknown status";
  return NeedsReport(answer.number) ? "no report yet" : "no result";
}

bool IsAsExpected(const Answer& answer) { return answer.status == 0; }

}  // namespace WattleafHost
