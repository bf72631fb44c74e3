// A process that runs daily passes over a data folder and may end in the middle of one like a
// killed host: no destructor runs and nothing is flushed.
//
//   ledger_pass_probe FOLDER STEP...          (ASCII only)
//
//   report=PATH        the file to which later passes append a report, see RunPass
//   unprotected        later passes read samples without data protection, which is slow
//   tool=PATH          later passes also make the report of applications; in place of the energy
//                      tool, this file is copied
//   end-at=N           the N-th counted call of the next pass ends the process with status 9
//   end-after-save=N   the same, counted from the call that opens the ledger for saving
//   written=PERCENT    how much reaches the file if the process ends in a write; 50 without it
//
//   pass=TIME          runs a daily pass at that local time, "2024-05-08T14:30:00"
//
//   copy-ledger=PATH   copies the ledger file

#include <windows.h>

#include <wincrypt.h>

#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/wide_file.h"
#include "collection/ledger_fixture.h"
#include "collection/unprotected_samples.h"
#include "import_patch.h"
#include "support/log_capture.h"
#include "support/pin_zone.h"

namespace {

using TestSupport::TestHelper;
using Zq::Gantry::Server::Services::Wattleaf::UniqueFile;

constexpr UINT kEnded = 9;

int g_calls = 0;
int g_endAt = 0;
int g_saveCall = 0;
int g_storeCall = 0;
std::size_t g_writtenPercent = 50;
std::optional<int> g_endAfterSave;

[[noreturn]] void EndProcess() {
  TerminateProcess(GetCurrentProcess(), kEnded);
  std::abort();
}

void Count() {
  if (++g_calls == g_endAt) EndProcess();
}

/// Counts the calls of one import of this program.
template <const char* name, typename Function>
class Counted;

template <const char* name, typename Result, typename... Arguments>
class Counted<name, Result(Arguments...)> {
 public:
  Counted() { original_ = patch_.template Original<Result(Arguments...)>(); }

 private:
  static Result Call(Arguments... arguments) {
    Count();
    return original_(arguments...);
  }

  static inline Result (*original_)(Arguments...) = nullptr;
  const Standin::ImportPatch patch_{name, &Counted::Call};
};

constexpr char kAttributes[] = "GetFileAttributesW";
constexpr char kUnlink[] = "_wunlink";
constexpr char kOpenShared[] = "_wfopen";
constexpr char kRead[] = "fread";
constexpr char kClose[] = "fclose";
constexpr char kUnprotect[] = "CryptUnprotectData";

errno_t (*g_open)(std::FILE**, const wchar_t*, const wchar_t*) = nullptr;

errno_t CountedOpen(std::FILE** file, const wchar_t* path, const wchar_t* mode) {
  const bool isWritten = *mode == L'w';
  const bool isSave = isWritten && std::wstring_view(path).ends_with(L"PowerConsumption.json");
  if (isSave) g_saveCall = g_calls + 1;
  if (isWritten && std::wstring_view(path).ends_with(L"Powerlog.json")) g_storeCall = g_calls + 1;
  if (isSave && g_endAfterSave) g_endAt = g_saveCall + *g_endAfterSave;
  Count();
  return g_open(file, path, mode);
}

std::size_t (*g_write)(const void*, std::size_t, std::size_t, std::FILE*) = nullptr;

/// If the process ends in a write, a part of the data reaches the file.
std::size_t CountedWrite(const void* data, std::size_t size, std::size_t count, std::FILE* file) {
  if (++g_calls == g_endAt) {
    g_write(data, 1, size * count * g_writtenPercent / 100, file);
    std::fflush(file);
    EndProcess();
  }
  return g_write(data, size, count, file);
}

std::wstring g_toolReport;
std::wstring g_reportPath;

/// The energy tool: its report is whole when it ends.
int RunTool(const char*) {
  Count();
  CopyFileW(g_toolReport.c_str(), g_reportPath.c_str(), /*failIfExists=*/FALSE);
  Count();
  return 0;
}

/// The counted calls of a pass: those that read or change the folder, the decryption and the tool.
struct CountedCalls {
  CountedCalls() {
    g_open = open.Original<decltype(CountedOpen)>();
    g_write = write.Original<decltype(CountedWrite)>();
  }

  const Standin::ImportPatch open{"_wfopen_s", &CountedOpen};
  const Standin::ImportPatch write{"fwrite", &CountedWrite};
  const Counted<kAttributes, decltype(GetFileAttributesW)> attributes;
  const Standin::ImportPatch tool{"system", &RunTool};
  const Counted<kUnlink, decltype(_wunlink)> unlink;
  const Counted<kOpenShared, decltype(_wfopen)> openShared;
  const Counted<kRead, decltype(std::fread)> read;
  const Counted<kClose, decltype(std::fclose)> close;
  const Counted<kUnprotect, decltype(CryptUnprotectData)> unprotect;
};

class Probe {
 public:
  explicit Probe(const std::wstring& folder) : folder_(folder) {}

  bool Run(const std::wstring& step) {
    if (step == L"unprotected") {
      unprotected_.emplace();
    } else if (const auto report = ValueOf(step, L"report=")) {
      reportPath_ = *report;
    } else if (const auto tool = ValueOf(step, L"tool=")) {
      g_toolReport = *tool;
      g_reportPath = folder_ + L"\\Powerlog.xml";
    } else if (const auto percent = ValueOf(step, L"written=")) {
      g_writtenPercent = std::stoul(*percent);
    } else if (const auto number = ValueOf(step, L"end-at=")) {
      g_endAt = std::stoi(*number);
    } else if (const auto calls = ValueOf(step, L"end-after-save=")) {
      g_endAfterSave = std::stoi(*calls);
    } else if (const auto time = ValueOf(step, L"pass=")) {
      RunPass({time->begin(), time->end()});
    } else if (const auto path = ValueOf(step, L"copy-ledger=")) {
      return CopyFileW((folder_ + L"\\PowerConsumption.json").c_str(), path->c_str(), FALSE) != 0;
    } else {
      return false;
    }
    return true;
  }

 private:
  static std::optional<std::wstring> ValueOf(const std::wstring& step, const std::wstring& name) {
    if (!step.starts_with(name)) return std::nullopt;
    return step.substr(name.size());
  }

  /// Runs a pass and reports the number of counted calls, which of them opened the ledger and the
  /// store to save them, then the log.
  void RunPass(const std::string& localTime) {
    TestSupport::FakeClock::Set(localTime);
    g_calls = 0;
    {
      const CountedCalls counted;
      helper_.CalculateDailyPowerConsumption();
      if (!g_toolReport.empty()) helper_.OnGetTop20PowerApps();
    }
    const UniqueFile report(_wfopen(reportPath_.c_str(), L"ab"));
    if (!report) return;
    std::fprintf(report.get(), "%d %d %d\n", g_calls, g_saveCall, g_storeCall);
    for (const TestSupport::LogRecord& record : log_.Records()) {
      std::fprintf(report.get(), "%ls\n", record.text.c_str());
    }
    log_.Clear();
  }

  const std::wstring folder_;
  std::wstring reportPath_;
  const TestSupport::FakeClock clock_;
  std::optional<TestSupport::UnprotectedSamples> unprotected_;
  TestSupport::LogCapture log_;
  TestHelper helper_{folder_.c_str()};
};

}  // namespace

int main(int argc, char** argv) {
  TestSupport::PinZone();
  const std::vector<std::string> arguments(argv, argv + argc);
  if (arguments.size() < 2) return 2;
  Probe probe({arguments[1].begin(), arguments[1].end()});
  for (std::size_t i = 2; i < arguments.size(); ++i) {
    if (!probe.Run({arguments[i].begin(), arguments[i].end()})) return 2;
  }
  return 0;
}
