// Loads and frees the library again and again, and measures what stays behind.
//
// load_cycles CYCLES KIND...
// KIND  "bare": the bare library; "idle": the service, without a command; "commands": the service,
//       with all ten commands; or a number from 1 to 10: the service, with that command.
//       "keep" keeps loaded from then on what the service imports
// Prints a line for each kind: handles, private bytes and heap bytes that were added from the end
// of the first half of the cycles to the end. The program has a C++ runtime of its own, as a host
// in another language, so that the runtime of the libraries is freed with them.

#include <windows.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>
#include <string>

#include "faults/keep_imports.h"
#include "platform/win32/owners.h"
#include "process_use.h"
#include "serve/unique_result.h"
#include "service/command_table.h"
#include "service/zq_service.h"
#include "simulated_calls.h"

namespace {

using WattleafHost::FreeResult;
using WattleafHost::UniqueResult;
using Zq::Gantry::Platform::UniqueModule;
using Zq::Gantry::Server::Services::ZQService;
using namespace Zq::Gantry::Server::Services::Wattleaf;

constexpr wchar_t kService[] = L"WattleafService.dll";
constexpr wchar_t kBare[] = L"bare_library.dll";

UniqueModule Load(const wchar_t* name) {
  UniqueModule library(LoadLibraryW(name));
  if (!library) throw std::runtime_error("a library does not load");
  return library;
}

template <typename Function>
Function* Find(const UniqueModule& library, const char* name) {
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(library.get(), name)));
}

void UseBareLibrary() {
  const UniqueModule library = Load(kBare);
  if (Find<std::size_t()>(library, "UseTheRuntime")() != 1) {
    throw std::runtime_error("the bare library was not freed");
  }
}

void RunCommand(ZQService& service, unsigned int command) {
  std::wstring request = L"C:\\users\\Public\\Wattleaf cycles?30";
  wchar_t* output = nullptr;
  const int status = service.ExecuteCommand(/*session=*/nullptr, command, request.data(), &output,
                                            /*callback=*/{}, /*configuration=*/nullptr);
  const UniqueResult result(output, FreeResult{&service});
  if (status != kResultHandedOver && status != kNoResult) {
    throw std::runtime_error("command " + std::to_string(command) + " has status " +
                             std::to_string(status));
  }
}

void UseService(unsigned int firstCommand, unsigned int lastCommand) {
  const UniqueModule library = Load(kService);
  const Standin::SimulatedCalls fake(library.get(), /*enabled=*/true);
  const std::unique_ptr<ZQService> service(Find<ZQService*()>(library, "ZQCreateService")());
  for (unsigned int command = firstCommand; command <= lastCommand; ++command) {
    RunCommand(*service, command);
  }
}

void UseOnce(const std::string& kind) {
  if (kind == "bare") return UseBareLibrary();
  if (kind == "idle") return UseService(1, 0);
  if (kind == "commands") return UseService(kFirstCommand, kLastCommand);
  const auto command = static_cast<unsigned int>(std::stoul(kind));
  UseService(command, command);
}

bool IsLoaded() {
  return GetModuleHandleW(kService) != nullptr || GetModuleHandleW(kBare) != nullptr;
}

void Cycle(const std::string& kind, int cycles) {
  for (int i = 0; i < cycles; ++i) {
    UseOnce(kind);
    if (IsLoaded()) throw std::runtime_error("a library stays loaded");
  }
}

void Measure(const std::string& kind, int cycles) {
  Cycle(kind, cycles / 2);
  const Soak::ProcessUse before = Soak::MeasureProcess();
  Cycle(kind, cycles - cycles / 2);
  const Soak::ProcessUse after = Soak::MeasureProcess();
  std::printf("%s %d %ld %ld %ld\n", kind.c_str(), cycles - cycles / 2,
              after.handles - before.handles, after.privateBytes - before.privateBytes,
              after.heapBytes - before.heapBytes);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: load_cycles CYCLES KIND...\n");
    return 2;
  }
  try {
    for (int i = 2; i < argc; ++i) {
      if (std::string(argv[i]) == "keep") {
        Faults::KeepImportsOf(kService);
      } else {
        Measure(argv[i], std::atoi(argv[1]));
      }
    }
    std::printf("load_cycles: complete\n");
    std::fflush(stdout);
    return 0;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "load_cycles: %s\n", failure.what());
    return 1;
  }
}
