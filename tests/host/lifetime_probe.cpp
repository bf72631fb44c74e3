// A host that ends, or frees the library, at an awkward moment. The argument names the moment; the
// exit status is 7 where everything was as it should be.

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <string>

#include "import_patch.h"
#include "service/zq_service.h"
#include "simulated_calls.h"

namespace {

using Zq::Gantry::Server::Services::ZQService;

constexpr int kAsItShouldBe = 7;
constexpr const wchar_t* kLibrary = L"WattleafService.dll";

int Wrong(const char* what) {
  std::printf("%s\n", what);
  return 1;
}

std::unique_ptr<ZQService> MakeService(HMODULE library) {
  const auto create = reinterpret_cast<ZQService* (*)()>(
      reinterpret_cast<void*>(GetProcAddress(library, "ZQCreateService")));
  return std::unique_ptr<ZQService>(create());
}

bool AnswersTrueTo8(ZQService& service) {
  std::wstring input;
  wchar_t* output = nullptr;
  if (service.ExecuteCommand(nullptr, 8, input.data(), &output, {}, nullptr) != 0) return false;
  const bool isTrue = std::wstring(output) == L"true";
  service.FreeResult(output);
  return isTrue;
}

const char* NameOfExport(HMODULE library, std::initializer_list<const char*> parts) {
  const auto at = [library](std::uintptr_t offset) {
    return reinterpret_cast<std::uintptr_t>(library) + offset;
  };
  const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(library);
  const auto* headers =
      reinterpret_cast<const IMAGE_NT_HEADERS*>(at(static_cast<std::uintptr_t>(dos->e_lfanew)));
  const auto& entry = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* table = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(at(entry.VirtualAddress));
  const auto* names = reinterpret_cast<const DWORD*>(at(table->AddressOfNames));
  for (DWORD i = 0; i < table->NumberOfNames; ++i) {
    const std::string name = reinterpret_cast<const char*>(at(names[i]));
    if (std::all_of(parts.begin(), parts.end(),
                    [&name](const char* part) { return name.find(part) != std::string::npos; })) {
      return reinterpret_cast<const char*>(at(names[i]));
    }
  }
  return "";
}

/// The exported function whose decorated name has all of `parts`, in any compiler's decoration.
template <typename Function>
Function* FindExport(HMODULE library, std::initializer_list<const char*> parts) {
  return reinterpret_cast<Function*>(
      reinterpret_cast<void*>(GetProcAddress(library, NameOfExport(library, parts))));
}

HANDLE workerThread = nullptr;

void WINAPI NoSleep(DWORD milliseconds) {
  if (milliseconds == 90000) {
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &workerThread,
                    SYNCHRONIZE, FALSE, 0);
  }
}

/// Starts the worker and waits for its early end: no firmware here answers the probe.
bool LetWorkerEnd(HMODULE library, ZQService& service) {
  const Standin::ImportPatch patch(library, "Sleep", &NoSleep);
  service.startup_task();
  for (int i = 0; i < 500 && workerThread == nullptr; ++i) Sleep(10);
  return workerThread != nullptr && WaitForSingleObject(workerThread, 30000) == WAIT_OBJECT_0;
}

int FreeIdle(HMODULE library) {
  auto service = MakeService(library);
  if (!AnswersTrueTo8(*service)) return Wrong("no answer");
  service.reset();
  FreeLibrary(library);
  return GetModuleHandleW(kLibrary) == nullptr ? kAsItShouldBe : Wrong("still loaded");
}

int FreeWhileWorkerSleeps(HMODULE library) {
  auto service = MakeService(library);
  service->startup_task();
  Sleep(100);
  service.reset();
  FreeLibrary(library);
  if (GetModuleHandleW(kLibrary) == nullptr) return Wrong("unloaded below its worker");
  return AnswersTrueTo8(*MakeService(library)) ? kAsItShouldBe : Wrong("no answer");
}

int FreeAfterWorkerEnded(HMODULE library) {
  auto service = MakeService(library);
  if (!LetWorkerEnd(library, *service)) return Wrong("the worker goes on");
  service.reset();
  FreeLibrary(library);
  return kAsItShouldBe;
}

int ReturnWhileWorkerSleeps(HMODULE library) {
  MakeService(library)->startup_task();
  Sleep(100);
  return kAsItShouldBe;
}

int ExitProcessWhileWorkerSleeps(HMODULE library) {
  MakeService(library)->startup_task();
  Sleep(100);
  ExitProcess(kAsItShouldBe);
}

int ReturnBeforeWorkerRuns(HMODULE library) {
  MakeService(library)->startup_task();
  return kAsItShouldBe;
}

int ReturnAfterTwoStarts(HMODULE library) {
  const auto service = MakeService(library);
  service->startup_task();
  service->startup_task();
  return kAsItShouldBe;
}

int ReturnAfterWorkerEnded(HMODULE library) {
  const auto service = MakeService(library);
  return LetWorkerEnd(library, *service) ? kAsItShouldBe : Wrong("the worker goes on");
}

HANDLE passEnded = nullptr;

void WINAPI SleepAfterThePassOnly(DWORD milliseconds) {
  if (milliseconds == 90000) return;
  if (milliseconds == 86400000) SetEvent(passEnded);
  Sleep(milliseconds);
}

/// The worker with a collector that is collecting and a first pass made; then `end` ends the
/// process, or returns the exit status of main.
template <typename End>
int EndWhileCollecting(HMODULE library, End end) {
  passEnded = CreateEventW(nullptr, /*manualReset=*/TRUE, /*initialState=*/FALSE, nullptr);
  const Standin::SimulatedCalls fake(library, /*enabled=*/true);
  const Standin::ImportPatch patch(library, "Sleep", &SleepAfterThePassOnly);
  MakeService(library)->startup_task();
  if (WaitForSingleObject(passEnded, 60000) != WAIT_OBJECT_0) return Wrong("no pass");
  return end();
}

int ReturnWhileCollecting(HMODULE library) {
  return EndWhileCollecting(library, [] { return kAsItShouldBe; });
}

int ExitWhileCollecting(HMODULE library) {
  return EndWhileCollecting(library, []() -> int { std::exit(kAsItShouldBe); });
}

int ExitProcessWhileCollecting(HMODULE library) {
  return EndWhileCollecting(library, []() -> int { ExitProcess(kAsItShouldBe); });
}

/// Without startup_task, which would keep the library loaded for good.
int FreeWhileCollecting(HMODULE library) {
  using Helper = void;
  const auto instance = FindExport<Helper*()>(library, {"WattleafHelper", "Instance"});
  const auto start = FindExport<bool(Helper*)>(library, {"WattleafHelper", "StartCollection"});
  {
    const Standin::SimulatedCalls fake(library, /*enabled=*/true);
    if (!start(instance())) return Wrong("collection does not start");
  }
  FreeLibrary(library);
  return GetModuleHandleW(kLibrary) == nullptr ? kAsItShouldBe : Wrong("still loaded");
}

struct Moment {
  const char* name;
  int (*run)(HMODULE library);
};

constexpr Moment kMoments[] = {
    {"free-idle", &FreeIdle},
    {"free-while-worker-sleeps", &FreeWhileWorkerSleeps},
    {"free-after-worker-ended", &FreeAfterWorkerEnded},
    {"return-while-worker-sleeps", &ReturnWhileWorkerSleeps},
    {"exit-process-while-worker-sleeps", &ExitProcessWhileWorkerSleeps},
    {"return-before-worker-runs", &ReturnBeforeWorkerRuns},
    {"return-after-two-starts", &ReturnAfterTwoStarts},
    {"return-after-worker-ended", &ReturnAfterWorkerEnded},
    {"return-while-collecting", &ReturnWhileCollecting},
    {"exit-while-collecting", &ExitWhileCollecting},
    {"exit-process-while-collecting", &ExitProcessWhileCollecting},
    {"free-while-collecting", &FreeWhileCollecting},
};

}  // namespace

int main(int argc, char** argv) {
  const HMODULE library = LoadLibraryW(kLibrary);
  if (library == nullptr || argc != 2) return Wrong("no library, or no moment");
  for (const Moment& moment : kMoments) {
    if (std::string(argv[1]) == moment.name) return moment.run(library);
  }
  return Wrong("unknown moment");
}
