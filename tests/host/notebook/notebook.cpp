#include "host/notebook/notebook.h"

#include <windows.h>

#include <algorithm>
#include <sstream>

namespace TestSupport {

namespace {

/// The lines of a file; empty if it does not exist.
std::vector<std::string> LinesOf(const std::wstring& path) {
  std::vector<std::string> lines;
  if (!FileExists(path)) return lines;
  std::istringstream text(ReadWholeFile(path));
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

}  // namespace

long NotebookRun::CountInLog(const std::string& line) const {
  return static_cast<long>(std::count(log.begin(), log.end(), line));
}

NotebookRun RunOnNotebook(const std::vector<std::wstring>& arguments, const std::wstring& host) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"service.log");
  const ScopedVariable log(L"WATTLEAF_LOG_FILE", path);
  // Enough days for every figure, and few enough to be written fast.
  const ScopedVariable days(L"WATTLEAF_COLLECTOR_DAYS", L"10");
  const ScopedVariable reportedDays(L"WATTLEAF_POWERCFG_DAYS", L"10");
  NotebookRun run{RunProgram(host, arguments), {}};
  run.log = LinesOf(path);
  return run;
}

bool HasNotebook(const std::wstring& host) { return FileExists(host); }

std::vector<std::string> CollectorCalls::Lines() const { return LinesOf(path_); }

}  // namespace TestSupport
