// A host that ends, or frees the library, at an awkward moment. The argument names the moment; the
// exit status is 7 where everything was as it should be.

#include <windows.h>

#include <cstdio>
#include <memory>
#include <string>

#include "import_patch.h"
#include "service/zq_service.h"

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
