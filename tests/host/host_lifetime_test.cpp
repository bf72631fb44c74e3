// The library's life in a host: every run is a process of its own, with the real waits. A worker
// sleeps 90 seconds first, so a host that waits for it is seen by the time it takes.

#include <windows.h>

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "host_process.h"

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

TEST(HostLifetime, AnIdleLibraryIsUnloadedWhenItIsFreed) { ExpectEndsAtOnce(L"free-idle"); }

TEST(HostLifetime, ALibraryWhoseWorkerSleepsStaysLoadedAndAnswers) {
  ExpectEndsAtOnce(L"free-while-worker-sleeps");
}

TEST(HostLifetime, ALibraryWhoseWorkerEndedCanBeFreed) {
  ExpectEndsAtOnce(L"free-after-worker-ended");
}

TEST(HostLifetime, AHostThatReturnsWhileTheWorkerSleepsEndsAtOnce) {
  ExpectEndsAtOnce(L"return-while-worker-sleeps");
}

TEST(HostLifetime, AHostThatExitsWhileTheWorkerSleepsEndsAtOnce) {
  ExpectEndsAtOnce(L"exit-process-while-worker-sleeps");
}

TEST(HostLifetime, AHostThatReturnsRightAfterTheStartEndsAtOnce) {
  ExpectEndsAtOnce(L"return-before-worker-runs");
}

TEST(HostLifetime, AHostThatStartedTwiceEndsAtOnce) {
  ExpectEndsAtOnce(L"return-after-two-starts");
}

TEST(HostLifetime, AHostWhoseWorkerEndedEndsAtOnce) {
  ExpectEndsAtOnce(L"return-after-worker-ended");
}
