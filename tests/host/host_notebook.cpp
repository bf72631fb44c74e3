#include "host_notebook.h"

#include <windows.h>

#include <algorithm>
#include <sstream>

#include "support/temp_folder.h"

namespace TestSupport {

long NotebookRun::CountInLog(const std::string& line) const {
  return static_cast<long>(std::count(log.begin(), log.end(), line));
}

NotebookRun RunOnNotebook(const std::vector<std::wstring>& arguments) {
  const TempFolder folder;
  const std::wstring path = folder.File(L"service.log");
  const ScopedVariable log(L"WATTLEAF_LOG_FILE", path);
  // Enough for every figure, and soon written.
  const ScopedVariable days(L"WATTLEAF_COLLECTOR_DAYS", L"10");
  const ScopedVariable reportedDays(L"WATTLEAF_POWERCFG_DAYS", L"10");
  NotebookRun run{RunProgram(InstalledHost(), arguments), {}};
  if (!FileExists(path)) return run;
  std::istringstream lines(ReadWholeFile(path));
  for (std::string line; std::getline(lines, line);) run.log.push_back(line);
  return run;
}

bool NotebookIsThere() { return FileExists(InstalledHost()); }

}  // namespace TestSupport
