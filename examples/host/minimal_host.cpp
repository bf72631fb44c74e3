// The smallest host: loads the library from the program's folder, makes the service, starts it,
// asks all commands, and frees what it got. Command 2 writes icons to the folder Icons beside the
// program.
//
//   minimal_host [SECONDS]
//
// Waits up to SECONDS for the first pass of a new machine. The collector starts after 90 seconds.

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
std::string Ask(ZQService& service, unsigned int command, std::wstring input = {}) {
  wchar_t* output = nullptr;
  const int status = service.ExecuteCommand(/*session=*/nullptr, command, input.data(), &output,
                                            /*callback=*/nullptr, /*configuration=*/nullptr);
  if (status != Wattleaf::kResultHandedOver) return {};
  // The low byte of each character is a byte of UTF-8 text.
  std::string answer;
  for (const wchar_t* at = output; *at != L'\0'; ++at) answer += static_cast<char>(*at);
  service.FreeResult(output);
  return answer;
}

/// The folder for icons and the number of days. The folder is absolute, because a pass changes the
/// current directory.
std::wstring InputOfRanking() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return path.substr(0, path.find_last_of(L'\\') + 1) + L"Icons?30";
}

/// The pass writes the ledger, from which command 1 answers, and last the store of command 2.
void WaitForFirstPass(ZQService& service, std::chrono::seconds limit) {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (std::chrono::steady_clock::now() < end) {
    if (Ask(service, 1) != "0.000000" && !Ask(service, 2, InputOfRanking()).empty()) return;
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
  for (const Wattleaf::Command command : Wattleaf::kAllCommands) {
    const bool isRanking = command == Wattleaf::Command::kTopApplications;
    const std::string answer =
        Ask(*service, NumberOf(command), isRanking ? InputOfRanking() : std::wstring());
    std::printf("%2u %s\n", NumberOf(command), answer.c_str());
  }
  service->EndSession(&session);
  return EXIT_SUCCESS;
}
