#include "service_session.h"

#include <stdexcept>

#include "base/utf8_text.h"
#include "serve/unique_result.h"
#include "service/command_table.h"

namespace Scenario {

namespace {

using Zq::Gantry::Server::Services::ZQService;
using Zq::Gantry::Server::Services::Wattleaf::kNoResult;

ZQService* MakeService(HMODULE library) {
  using Factory = ZQService* (*)();
  // Through the generic function pointer type: compilers warn of a direct cast from FARPROC.
  const auto found = reinterpret_cast<void (*)()>(GetProcAddress(library, "ZQCreateService"));
  if (found == nullptr)
    throw std::runtime_error("WattleafService.dll is missing or has no factory");
  return reinterpret_cast<Factory>(found)();
}

}  // namespace

ServiceSession::ServiceSession()
    : library_(LoadLibraryW(L"WattleafService.dll")), service_(MakeService(library_)) {}

std::optional<std::string> ServiceSession::TryRun(unsigned int command, const std::string& input) {
  std::wstring request(input.begin(), input.end());
  wchar_t* output = nullptr;
  const int status = service_->ExecuteCommand(/*session=*/nullptr, command, request.data(), &output,
                                              /*callback=*/{}, /*configuration=*/nullptr);
  if (status == kNoResult) return std::nullopt;
  if (status != 0) {
    throw std::runtime_error("command " + std::to_string(command) + " gives status " +
                             std::to_string(status));
  }
  const WattleafHost::UniqueResult result(output, WattleafHost::FreeResult{service_.get()});
  return Zq::Gantry::Server::Services::Wattleaf::ToUtf8(result.get());
}

std::string ServiceSession::Run(unsigned int command) {
  const auto text = TryRun(command, {});
  if (!text) throw std::runtime_error("command " + std::to_string(command) + " has no answer");
  return *text;
}

}  // namespace Scenario
