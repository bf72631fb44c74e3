#include "collection/wattleaf_helper.h"
#include "logging/trace_logger.h"
#include "reports/report_runner.h"
#include "reports/report_tool.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Lets the exception of a negative status out, as the text's own function tells.
void LogToolFailure(std::wstring_view literal, int status) {
  const std::wstring text = ToolFailureText(literal, status);
  // The text is an argument: it may end in "%" or hold "%d", and nothing follows that would fill
  // it.
  Logging::LogManager::GetLogger()->LogError(L"%s", text.c_str());
}

}  // namespace

void WattleafHelper::OnGetTop20PowerApps() {
  const int status = RunReportTool(collectionPath, kPowerReportCommand);
  if (status != 0) return LogToolFailure(kPowerReportFailure, status);

  ConvertPowerLogXmltoJson();
  // Kept on purpose: it waits for whoever holds the lock and guards nothing (test
  // ReportRun.WaitsForAHolderOfTheLockAfterTheConversion).
  const std::lock_guard wait(dataMutex);
}

void WattleafHelper::OnGetErrorAndWarnings() {
  const int status = RunReportTool(collectionPath, kEnergyReportCommand);
  if (status != 0) return LogToolFailure(kEnergyReportFailure, status);

  const std::lock_guard lock(dataMutex);
  errorsAndWarningsJson.clear();
}

// Kept on purpose: nothing fills the text and nobody reads the report, so the answer is the empty
// list, without the lock (tests ErrorsAndWarnings.*).
void WattleafHelper::GetErrorsAndWarnings(std::wstring& result) {
  result = errorsAndWarningsJson.empty() ? L"[]" : errorsAndWarningsJson;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
