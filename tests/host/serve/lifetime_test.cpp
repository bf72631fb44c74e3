// The library's lifetime in a host. Each test runs a process with the real waits. The worker first
// sleeps 90 seconds, so a host that waits for it takes too long.

#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "host/notebook/host_process.h"

using TestSupport::HostRun;
using TestSupport::RunProgram;

namespace {

void ExpectEndsAtOnce(const wchar_t* moment) {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  path.resize(path.find_last_of(L'\\') + 1);

  const auto start = std::chrono::steady_clock::now();
  const HostRun run = RunProgram(path + L"lifetime_probe.exe", {moment});
  EXPECT_EQ(run.exitStatus, 7U) << run.output;
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

}  // namespace

TEST(HostLifetime, IdleLibraryIsUnloadedWhenItIsFreed) { ExpectEndsAtOnce(L"free-idle"); }

TEST(HostLifetime, LibraryWithASleepingWorkerStaysLoadedAndAnswers) {
  ExpectEndsAtOnce(L"free-while-worker-sleeps");
}

TEST(HostLifetime, LibraryWithAnEndedWorkerCanBeFreed) {
  ExpectEndsAtOnce(L"free-after-worker-ended");
}

TEST(HostLifetime, ReturnFromMainWhileTheWorkerSleepsEndsTheProcessAtOnce) {
  ExpectEndsAtOnce(L"return-while-worker-sleeps");
}

TEST(HostLifetime, ExitProcessWhileTheWorkerSleepsEndsTheProcessAtOnce) {
  ExpectEndsAtOnce(L"exit-process-while-worker-sleeps");
}

TEST(HostLifetime, ReturnFromMainRightAfterTheStartEndsTheProcessAtOnce) {
  ExpectEndsAtOnce(L"return-before-worker-runs");
}

TEST(HostLifetime, ReturnFromMainAfterTwoStartsEndsTheProcessAtOnce) {
  ExpectEndsAtOnce(L"return-after-two-starts");
}

TEST(HostLifetime, ReturnFromMainAfterTheWorkerEndedEndsTheProcessAtOnce) {
  ExpectEndsAtOnce(L"return-after-worker-ended");
}
