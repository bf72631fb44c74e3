// The smallest host: loads the library from the program's folder, makes the service, starts it,
// asks all commands but the one that writes icons, and frees what it got.
//
//   minimal_host [SECONDS]
//
// Waits up to SECONDS until the collector runs, which it does 90 seconds after the start at the
// earliest, and then until the first pass has written its ledger.

#include <windows.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "../wine_answers.h"
#include "service/command_table.h"
#include "service/service_factory.h"

namespace {

using namespace Zq::Gantry::Server::Services;

struct FreeModule {
  using pointer = HMODULE;
  void operator()(HMODULE module) const { FreeLibrary(module); }
};

/// The answer to a command; empty if it has none.
std::string Ask(ZQService& service, void* session, unsigned int command, std::wstring input = {}) {
  wchar_t* output = nullptr;
  const int status = service.ExecuteCommand(session, command, input.data(), &output,
                                            /*callback=*/nullptr, /*configuration=*/nullptr);
  if (status != Wattleaf::kResultHandedOver) return {};
  // The low byte of each character is a byte of UTF-8 text.
  std::string answer;
  for (const wchar_t* at = output; *at != L'\0'; ++at) answer += static_cast<char>(*at);
  service.FreeResult(output);
  return answer;
}

void WaitForFirstPass(ZQService& service, std::chrono::seconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  const auto isReady = [&service] {
    // Command 10: the collector runs. Command 1: the ledger has been read or computed.
    return Ask(service, nullptr, 10) == "true" && Ask(service, nullptr, 1) != "0.000000";
  };
  while (std::chrono::steady_clock::now() < end && !isReady()) {
    std::this_thread::sleep_for(std::chrono::seconds(1));
  }
}

}  // namespace

int main(int count, char** arguments) {
  const std::unique_ptr<HMODULE, FreeModule> library(LoadLibraryW(kServiceLibraryName));
  if (library == nullptr) {
    std::printf("The library cannot be loaded: error %lu\n", GetLastError());
    return EXIT_FAILURE;
  }
  WineAnswers::Install(library.get());

  const auto factory = reinterpret_cast<ServiceFactory*>(
      reinterpret_cast<void (*)()>(GetProcAddress(library.get(), kServiceFactoryName)));
  if (factory == nullptr) return EXIT_FAILURE;
  // Destroyed before the library is freed.
  const std::unique_ptr<ZQService> service(factory());
  service->startup_task();

  wchar_t name[] = L"minimal_host";
  void* session = nullptr;
  service->StartSession(name, &session);
  WaitForFirstPass(*service, std::chrono::seconds(count > 1 ? std::atoi(arguments[1]) : 0));
  for (unsigned int command = Wattleaf::kFirstCommand; command <= Wattleaf::kLastCommand;
       ++command) {
    if (command == Wattleaf::NumberOf(Wattleaf::Command::kTopApplications)) continue;
    std::printf("%2u %s\n", command, Ask(*service, session, command).c_str());
  }
  service->EndSession(&session);
  return EXIT_SUCCESS;
}
