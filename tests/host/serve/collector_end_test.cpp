// The end of a host while the collector runs: the shipped library on the simulated notebook, in
// processes that end in each possible way.

#include <windows.h>

#include <chrono>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/notebook/host_process.h"
#include "host/notebook/notebook.h"
#include "support/scoped_variable.h"

using testing::ElementsAre;
using TestSupport::CollectorCalls;
using TestSupport::HostRun;
using TestSupport::InstalledHost;
using TestSupport::OnNotebook;
using TestSupport::RunProgram;
using TestSupport::ScopedVariable;

namespace {

constexpr unsigned long kProbePassed = 7;

/// Copies the probe into the folder of the installed host, where the collector is trusted.
std::wstring InstallProbe() {
  std::wstring self(MAX_PATH, L'\0');
  self.resize(GetModuleFileNameW(nullptr, self.data(), MAX_PATH));
  const std::wstring host = InstalledHost();
  const std::wstring probe = host.substr(0, host.find_last_of(L'\\')) + L"\\lifetime_probe.exe";
  if (!CopyFileW((self.substr(0, self.find_last_of(L'\\')) + L"\\lifetime_probe.exe").c_str(),
                 probe.c_str(), /*failIfExists=*/FALSE)) {
    ADD_FAILURE() << "cannot install the probe, Windows error " << GetLastError();
  }
  return probe;
}

class HostEndWhileCollecting : public OnNotebook {
 protected:
  void ExpectEndsSoon(const wchar_t* moment) {
    const std::wstring probe = InstallProbe();
    const auto start = std::chrono::steady_clock::now();
    const HostRun run = RunProgram(probe, {moment});
    EXPECT_EQ(run.exitStatus, kProbePassed) << run.output << run.errors;
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
  }

  /// With a collector whose stop or destruction would never return.
  void ExpectDoesNotCallTheCollector(const wchar_t* moment) {
    const ScopedVariable lock(L"WATTLEAF_COLLECTOR_LOCK", L"held");
    ExpectEndsSoon(moment);
    EXPECT_THAT(calls.Lines(), ElementsAre("create", "load", "callback", "start"));
  }

  const CollectorCalls calls{};
  const ScopedVariable days{L"WATTLEAF_COLLECTOR_DAYS", L"2"};
};

}  // namespace

TEST_F(HostEndWhileCollecting, ReturnFromMainDoesNotCallTheCollector) {
  ExpectDoesNotCallTheCollector(L"return-while-collecting");
}

TEST_F(HostEndWhileCollecting, ExitDoesNotCallTheCollector) {
  ExpectDoesNotCallTheCollector(L"exit-while-collecting");
}

TEST_F(HostEndWhileCollecting, ExitProcessDoesNotCallTheCollector) {
  ExpectDoesNotCallTheCollector(L"exit-process-while-collecting");
}

TEST_F(HostEndWhileCollecting, ReturnFromMainDoesNotCallACollectorThatHoldsNoLock) {
  ExpectEndsSoon(L"return-while-collecting");
  EXPECT_THAT(calls.Lines(), ElementsAre("create", "load", "callback", "start"));
}

TEST_F(HostEndWhileCollecting, FreeLibraryStopsDestroysAndUnloadsTheCollector) {
  ExpectEndsSoon(L"free-while-collecting");
  EXPECT_THAT(calls.Lines(),
              ElementsAre("create", "load", "callback", "start", "stop", "destroy", "unload"));
}

TEST_F(HostEndWhileCollecting, FreeLibraryDropsAnExceptionFromStopCollecting) {
  // Both runs write to one file.
  std::vector<std::string> expected;
  for (const wchar_t* failure : {L"stop standard", L"stop other"}) {
    const ScopedVariable thrown(L"WATTLEAF_COLLECTOR_FAILURE", failure);
    ExpectEndsSoon(L"free-while-collecting");
    for (const char* call : {"create", "load", "callback", "start", "stop", "destroy", "unload"}) {
      expected.push_back(call);
    }
    EXPECT_THAT(calls.Lines(), testing::ElementsAreArray(expected));
  }
}
