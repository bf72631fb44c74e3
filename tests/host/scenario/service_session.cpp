#include "service_session.h"

#include <stdexcept>

namespace Scenario {

namespace {

using Zq::Gantry::Server::Services::ZQService;

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

std::string ServiceSession::Ask(unsigned int command) {
  wchar_t empty[] = L"";
  wchar_t* output = nullptr;
  const int status = service_->ExecuteCommand(/*session=*/nullptr, command, empty, &output,
                                              /*callback=*/{}, /*configuration=*/nullptr);
  if (status != 0) {
    throw std::runtime_error("command " + std::to_string(command) + " gives status " +
                             std::to_string(status));
  }
  std::string text;
  for (const wchar_t* c = output; *c != L'\0'; ++c) text += static_cast<char>(*c);
  service_->FreeResult(output);
  return text;
}

}  // namespace Scenario
