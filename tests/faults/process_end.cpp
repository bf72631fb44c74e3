#include "process_end.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <system_error>

#include "collection/worker_plan.h"
#include "data_folder.h"
#include "loaded_library.h"
#include "platform/win32/owners.h"

namespace Faults {

namespace {

using Zq::Gantry::Platform::UniqueHandle;
using Zq::Gantry::Server::Services::Wattleaf::kPassInterval;

constexpr int kAsExpected = 7;
constexpr DWORD kLongestPassMilliseconds = 30'000;
constexpr DWORD kLongestRunMilliseconds = 60'000;

// Never closed: the worker may use them until the process ends.
HANDLE passEnded = nullptr;
HANDLE worker = nullptr;

/// Skips the delay before the start; the sleep of a day is real.
void WINAPI SleepAfterThePass(DWORD milliseconds) {
  if (milliseconds != kPassInterval.count()) {
    DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &worker,
                    SYNCHRONIZE, /*inherit=*/FALSE, /*options=*/0);
    return;
  }
  SetEvent(passEnded);
  Sleep(milliseconds);
}

bool AwaitPass() {
  while (worker == nullptr) Sleep(1);
  const std::array handles = {passEnded, worker};
  return WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(),
                                /*waitAll=*/FALSE, kLongestPassMilliseconds) != WAIT_TIMEOUT;
}

void WriteCounts(const FaultPoints& points, const std::string& path) {
  std::ofstream file(path);
  for (const Import& import : points.Imports()) {
    if (import.isFunction) file << import.name << ' ' << points.Calls(import.name) << '\n';
  }
}

const CallFailure* FindFailure(const std::string& call) {
  const auto& failures = AllCallFailures();
  const auto found = std::find_if(failures.begin(), failures.end(),
                                  [&](const CallFailure& row) { return call == row.name; });
  return found != failures.end() ? &*found : nullptr;
}

}  // namespace

int RunAndEnd(const std::string& call, std::uint32_t position, const std::string& counts) {
  passEnded = CreateEventW(nullptr, /*manualReset=*/TRUE, /*initialState=*/FALSE, nullptr);
  RemoveFolder(kDataFolder);
  // Kept on purpose: the library is loaded when the process ends.
  LoadedLibrary& library =
      *new LoadedLibrary({{"Sleep", reinterpret_cast<void*>(&SleepAfterThePass)}});
  UseTargetsOf(library.Points());
  if (const CallFailure* failure = FindFailure(call)) {
    library.Points().Fail(call, position, failure->function);
  }
  library.Points().Begin();
  try {
    library.Service().startup_task();
  } catch (const std::system_error&) {
    return kAsExpected + 1;
  }
  if (!AwaitPass()) return kAsExpected + 2;
  WriteCounts(library.Points(), counts);
  return kAsExpected;
}

std::string StartProcessThatEnds(const std::string& call, std::uint32_t position,
                                 const std::string& counts) {
  std::array<char, MAX_PATH> program{};
  GetModuleFileNameA(nullptr, program.data(), static_cast<DWORD>(program.size() - 1));
  std::string line = "\"" + std::string(program.data()) + "\" end \"" + call + "\" " +
                     std::to_string(position) + " \"" + counts + "\"";
  STARTUPINFOA startup{};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process{};
  if (!CreateProcessA(nullptr, line.data(), nullptr, nullptr, /*inheritHandles=*/TRUE, 0, nullptr,
                      nullptr, &startup, &process)) {
    return "does not start";
  }
  const UniqueHandle thread(process.hThread);
  const UniqueHandle handle(process.hProcess);
  if (WaitForSingleObject(handle.get(), kLongestRunMilliseconds) != WAIT_OBJECT_0) {
    TerminateProcess(handle.get(), 255);
    return "hangs";
  }
  DWORD status = 0;
  GetExitCodeProcess(handle.get(), &status);
  switch (status) {
    case kAsExpected:
      return "no difference";
    case kAsExpected + 1:
      return "startup_task throws std::system_error; the process ends";
    default:
      return "ends with " + std::to_string(status);
  }
}

std::map<std::string, std::uint32_t> ReadCounts(const std::string& counts) {
  std::map<std::string, std::uint32_t> calls;
  std::ifstream file(counts);
  std::string name;
  std::uint32_t count = 0;
  while (file >> name >> count) calls[name] = count;
  return calls;
}

}  // namespace Faults
