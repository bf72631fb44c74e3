// A host that ends, or frees the library, at a difficult moment. The argument names the moment; the
// exit status is 7 if everything is as expected.

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <string>

#include "import_patch.h"
#include "platform/win32/owners.h"
#include "serve/unique_result.h"
#include "service/zq_service.h"
#include "simulated_calls.h"

namespace {

using WattleafHost::FreeResult;
using WattleafHost::UniqueResult;
using Zq::Gantry::Platform::UniqueModule;
using Zq::Gantry::Server::Services::ZQService;

constexpr int kAsExpected = 7;
constexpr const wchar_t* kLibrary = L"WattleafService.dll";

int Fail(const char* what) {
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
  const UniqueResult result(output, FreeResult{&service});
  return std::wstring(result.get()) == L"true";
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

// Never closed: the process ends soon after.
HANDLE workerThread = nullptr;

void WINAPI NoSleep(DWORD milliseconds) {
  if (milliseconds == 90000) {
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &workerThread,
                    SYNCHRONIZE, FALSE, 0);
  }
}

/// Starts the worker and waits for its early end, since no firmware here answers the probe.
bool WaitForWorkerEnd(HMODULE library, ZQService& service) {
  const Standin::ImportPatch patch(library, "Sleep", &NoSleep);
  service.startup_task();
  for (int i = 0; i < 500 && workerThread == nullptr; ++i) Sleep(10);
  return workerThread != nullptr && WaitForSingleObject(workerThread, 30000) == WAIT_OBJECT_0;
}

int FreeIdle(UniqueModule& library) {
  auto service = MakeService(library.get());
  if (!AnswersTrueTo8(*service)) return Fail("no answer");
  service.reset();
  library.reset();
  return GetModuleHandleW(kLibrary) == nullptr ? kAsExpected : Fail("still loaded");
}

int FreeWhileWorkerSleeps(UniqueModule& library) {
  auto service = MakeService(library.get());
  service->startup_task();
  Sleep(100);
  service.reset();
  library.reset();
  if (GetModuleHandleW(kLibrary) == nullptr) return Fail("unloaded while its worker runs");
  return AnswersTrueTo8(*MakeService(GetModuleHandleW(kLibrary))) ? kAsExpected : Fail("no answer");
}

int FreeAfterWorkerEnded(UniqueModule& library) {
  auto service = MakeService(library.get());
  if (!WaitForWorkerEnd(library.get(), *service)) return Fail("the worker does not end");
  service.reset();
  library.reset();
  return kAsExpected;
}

int ReturnWhileWorkerSleeps(UniqueModule& library) {
  MakeService(library.get())->startup_task();
  Sleep(100);
  return kAsExpected;
}

int ExitProcessWhileWorkerSleeps(UniqueModule& library) {
  MakeService(library.get())->startup_task();
  Sleep(100);
  ExitProcess(kAsExpected);
}

int ReturnBeforeWorkerRuns(UniqueModule& library) {
  MakeService(library.get())->startup_task();
  return kAsExpected;
}

int ReturnAfterTwoStarts(UniqueModule& library) {
  const auto service = MakeService(library.get());
  service->startup_task();
  service->startup_task();
  return kAsExpected;
}

int ReturnAfterWorkerEnded(UniqueModule& library) {
  const auto service = MakeService(library.get());
  return WaitForWorkerEnd(library.get(), *service) ? kAsExpected : Fail("the worker does not end");
}

// Never closed, since the worker may use it until the process ends.
HANDLE passEnded = nullptr;

void WINAPI SleepAfterThePassOnly(DWORD milliseconds) {
  if (milliseconds == 90000) return;
  if (milliseconds == 86400000) SetEvent(passEnded);
  Sleep(milliseconds);
}

/// Waits until the collector runs and the first pass is completed. Then `end` ends the process, or
/// returns the exit status of main.
template <typename End>
int EndWhileCollecting(UniqueModule& library, End end) {
  passEnded = CreateEventW(nullptr, /*manualReset=*/TRUE, /*initialState=*/FALSE, nullptr);
  const Standin::SimulatedCalls fake(library.get(), /*enabled=*/true);
  const Standin::ImportPatch patch(library.get(), "Sleep", &SleepAfterThePassOnly);
  MakeService(library.get())->startup_task();
  if (WaitForSingleObject(passEnded, 60000) != WAIT_OBJECT_0) return Fail("no pass");
  return end();
}

int ReturnWhileCollecting(UniqueModule& library) {
  return EndWhileCollecting(library, [] { return kAsExpected; });
}

int ExitWhileCollecting(UniqueModule& library) {
  return EndWhileCollecting(library, []() -> int { std::exit(kAsExpected); });
}

int ExitProcessWhileCollecting(UniqueModule& library) {
  return EndWhileCollecting(library, []() -> int { ExitProcess(kAsExpected); });
}

/// Without startup_task, which would keep the library loaded until the process ends.
int FreeWhileCollecting(UniqueModule& library) {
  using Helper = void;
  const auto instance = FindExport<Helper*()>(library.get(), {"WattleafHelper", "Instance"});
  const auto start =
      FindExport<bool(Helper*)>(library.get(), {"WattleafHelper", "StartCollection"});
  {
    const Standin::SimulatedCalls fake(library.get(), /*enabled=*/true);
    if (!start(instance())) return Fail("collection does not start");
  }
  library.reset();
  return GetModuleHandleW(kLibrary) == nullptr ? kAsExpected : Fail("still loaded");
}

struct Moment {
  const char* name;
  int (*run)(UniqueModule& library);
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
  UniqueModule library(LoadLibraryW(kLibrary));
  if (!library || argc != 2) return Fail("no library, or no moment");
  for (const Moment& moment : kMoments) {
    if (std::string(argv[1]) != moment.name) continue;
    const int status = moment.run(library);
    // Kept on purpose: only the moments about freeing the library free it.
    static_cast<void>(library.release());
    return status;
  }
  return Fail("unknown moment");
}
