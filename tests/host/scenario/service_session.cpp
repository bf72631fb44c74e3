#include "service_session.h"

#include <stdexcept>

#include "service/command_table.h"

namespace Scenario {

namespace {

using Zq::Gantry::Server::Services::ZQService;
using Zq::Gantry::Server::Services::Wattleaf::kNoResult;

ZQService* MakeService(HMODULE library) {
  using Factory = ZQService* (*)();
  // Through the general function pointer: the type is the contract's, not the look-up's.
  const auto found = reinterpret_cast<void (*)()>(GetProcAddress(library, "ZQCreateService"));
  if (found == nullptr) throw std::runtime_error("WattleafService.dll is missing or not itself");
  return reinterpret_cast<Factory>(found)();
}

}  // namespace

ServiceSession::ServiceSession()
    : library_(LoadLibraryW(L"WattleafService.dll")), service_(MakeService(library_)) {}

std::optional<std::string> ServiceSession::TryAsk(unsigned int command, const std::string& input) {
  std::wstring request(input.begin(), input.end());
  wchar_t* output = nullptr;
  const int status = service_->ExecuteCommand(/*session=*/nullptr, command, request.data(), &output,
                                              /*callback=*/{}, /*configuration=*/nullptr);
  if (status == kNoResult) return std::nullopt;
  if (status != 0) {
    throw std::runtime_error("command " + std::to_string(command) + " gives status " +
                             std::to_string(status));
  }
  const std::wstring answer = output;
  service_->FreeResult(output);
  const int length = static_cast<int>(answer.size());
  std::string text(answer.size() * 3, '\0');
  const int bytes =
      WideCharToMultiByte(CP_UTF8, 0, answer.data(), length, text.data(),
                          static_cast<int>(text.size()), /*default=*/nullptr, /*used=*/nullptr);
  text.resize(static_cast<std::size_t>(bytes));
  return text;
}

std::string ServiceSession::Ask(unsigned int command) {
  const auto text = TryAsk(command, {});
  if (!text) throw std::runtime_error("command " + std::to_string(command) + " has no answer");
  return *text;
}

}  // namespace Scenario
