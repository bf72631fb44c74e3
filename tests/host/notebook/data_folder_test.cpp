// The subcommands that read the data folder without a pass, with development keys.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "answers/answer.h"
#include "host/notebook/notebook.h"
#include "host/notebook/pass_answers.h"
#include "platform/win32/owners.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

using testing::HasSubstr;
using testing::StartsWith;
using TestSupport::AnswersAfterAPass;
using TestSupport::AnswerText;
using TestSupport::NotebookRun;
using TestSupport::ReadWholeFile;
using TestSupport::RunOnNotebook;
using TestSupport::ScopedVariable;

namespace {

constexpr wchar_t kNotebookData[] = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";

class HostDataFolder : public TestSupport::OnNotebook {};

/// Attributes, times of creation and last change, and bytes of each file, by name.
using FilesState = std::map<std::wstring, std::tuple<DWORD, DWORD, DWORD, DWORD, std::string>>;

FilesState StateOfDataFolder() {
  FilesState state;
  WIN32_FIND_DATAW entry{};
  const std::wstring folder = kNotebookData;
  const Zq::Gantry::Platform::UniqueFindHandle search(
      FindFirstFileW((folder + L"\\*").c_str(), &entry));
  if (!search) return state;
  do {
    const std::wstring name = entry.cFileName;
    if (name == L"..") continue;
    state[name] = {entry.dwFileAttributes, entry.ftCreationTime.dwLowDateTime,
                   entry.ftLastWriteTime.dwHighDateTime, entry.ftLastWriteTime.dwLowDateTime,
                   name == L"." ? "" : ReadWholeFile(folder + L"\\" + name)};
  } while (FindNextFileW(search.get(), &entry));
  return state;
}

std::vector<rapidjson::Document> RowsOf(const NotebookRun& run) {
  std::vector<rapidjson::Document> rows;
  std::istringstream lines(run.host.output);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_FALSE(rows.emplace_back().Parse(line.c_str()).HasParseError()) << line;
  }
  return rows;
}

/// The values of the rows of a kind, by label or name; -1 for a missing one.
std::map<std::string, double> ValuesBy(const char* member, const std::string& kind,
                                       const std::vector<rapidjson::Document>& rows) {
  std::map<std::string, double> values;
  for (const auto& row : rows) {
    if (kind != row["kind"].GetString()) continue;
    const auto& key = row[member];
    values[key.IsString() ? key.GetString() : ""] =
        row["value"].IsNull() ? -1.0 : row["value"].GetDouble();
  }
  return values;
}

void ExpectSeries(const std::string& text, const std::map<std::string, double>& exported) {
  const auto series = WattleafHost::TryReadSeries(text);
  ASSERT_TRUE(series.has_value()) << text;
  std::size_t compared = 0;
  for (const auto& entry : series->entries) {
    const auto found = exported.find(entry.label);
    // An hour may have ended between the two runs.
    if (found == exported.end()) continue;
    ++compared;
    if (found->second < 0.0) {
      EXPECT_EQ(entry.value, 0.0) << entry.label;
    } else {
      EXPECT_EQ(found->second, entry.value) << entry.label;
    }
  }
  EXPECT_GE(compared + 1, series->entries.size());
}

}  // namespace

TEST_F(HostDataFolder, ExportHasTheFiguresOfTheCommands) {
  const rapidjson::Document answers = AnswersAfterAPass();
  const NotebookRun run = RunOnNotebook({L"export"});
  EXPECT_EQ(run.host.exitStatus, 0u) << run.host.errors;
  EXPECT_EQ(run.host.errors, "");
  const auto rows = RowsOf(run);
  EXPECT_NEAR(ValuesBy("label", "averageDay", rows)[""], std::stod(AnswerText(answers, 1)), 1e-6);
  EXPECT_GT(ValuesBy("label", "averageDay", rows)[""], 0.0);
  EXPECT_NEAR(ValuesBy("label", "treesSaved", rows)[""], std::stod(AnswerText(answers, 3)), 1e-6);
  EXPECT_EQ(ValuesBy("label", "platformSupport", rows)[""], 1.0);
  ExpectSeries(AnswerText(answers, 4), ValuesBy("label", "hour", rows));
  ExpectSeries(AnswerText(answers, 5), ValuesBy("label", "day", rows));
  ExpectSeries(AnswerText(answers, 6), ValuesBy("label", "month", rows));
  const auto ranking = WattleafHost::TryReadRanking(AnswerText(answers, 2));
  ASSERT_TRUE(ranking.has_value());
  std::map<std::string, double> shares;
  for (const auto& app : *ranking) shares[app.name] = app.share;
  EXPECT_EQ(ValuesBy("name", "application", rows), shares);
  EXPECT_FALSE(shares.empty());
}

TEST_F(HostDataFolder, ExportMetricsAndReportLeaveTheDataFolderAsItWas) {
  AnswersAfterAPass();
  // New samples that a pass would book, and a report that it would read and delete.
  const std::wstring report = std::wstring(kNotebookData) + L"\\Powerlog.xml";
  TestSupport::WriteWholeFile(report, "<report/>");
  const FilesState before = StateOfDataFolder();
  ASSERT_GE(before.size(), 5u);
  const TestSupport::TempFolder folder;
  EXPECT_EQ(RunOnNotebook({L"export"}).host.exitStatus, 0u);
  EXPECT_EQ(RunOnNotebook({L"metrics", folder.File(L"a.prom")}).host.exitStatus, 0u);
  EXPECT_EQ(RunOnNotebook({L"report", folder.File(L"a.html")}).host.exitStatus, 0u);
  EXPECT_EQ(StateOfDataFolder(), before);
  DeleteFileW(report.c_str());
  EXPECT_THAT(ReadWholeFile(folder.File(L"a.prom")), HasSubstr("wattleaf_day_energy_joules{"));
}

TEST_F(HostDataFolder, ExportWritesAFileAndPrintsNothing) {
  const TestSupport::TempFolder folder;
  const NotebookRun run =
      RunOnNotebook({L"export", L"--format", L"csv", L"--output", folder.File(L"a.csv")});
  EXPECT_EQ(run.host.exitStatus, 0u) << run.host.errors;
  EXPECT_EQ(run.host.output, "");
  EXPECT_THAT(ReadWholeFile(folder.File(L"a.csv")),
              StartsWith("formatVersion,host,machine,time,zone,kind,begin,label,name,days,value,"
                         "unit,missing\r\n1,"));
}

TEST_F(HostDataFolder, DaysOptionLimitsTheRankingOfExport) {
  EXPECT_THAT(RunOnNotebook({L"export", L"--days", L"0"}).host.output,
              HasSubstr("\"missing\":\"no energy in the period\"}"));
}

TEST_F(HostDataFolder, FileThatCannotBeWrittenEndsWithStatus5) {
  const NotebookRun run = RunOnNotebook({L"metrics", L"C:\\missing\\a.prom"});
  EXPECT_EQ(run.host.exitStatus, 5u);
  EXPECT_EQ(run.host.errors,
            "wattleaf_host: cannot write C:\\missing\\a.prom (Windows error 3); choose a folder "
            "that exists and that you may write to\n");
}

TEST_F(HostDataFolder, ExportSaysWhichFilesAreMissingOrDamaged) {
  AnswersAfterAPass();
  const std::wstring folder = kNotebookData;
  const std::wstring ledger = folder + L"\\PowerConsumption.json";
  const std::wstring store = folder + L"\\Powerlog.json";
  const std::string ledgerBytes = ReadWholeFile(ledger);
  const std::string storeBytes = ReadWholeFile(store);
  TestSupport::WriteWholeFile(ledger, "{}");
  TestSupport::WriteWholeFile(store, "[");
  const std::string damaged = RunOnNotebook({L"export"}).host.output;
  DeleteFileW(ledger.c_str());
  DeleteFileW(store.c_str());
  const std::string missing = RunOnNotebook({L"export"}).host.output;
  TestSupport::WriteWholeFile(ledger, ledgerBytes);
  TestSupport::WriteWholeFile(store, storeBytes);
  EXPECT_THAT(damaged, HasSubstr("\"missing\":\"ledger not readable\"}"));
  EXPECT_THAT(damaged, HasSubstr("\"missing\":\"store not readable\"}"));
  EXPECT_THAT(missing, HasSubstr("\"missing\":\"no ledger\"}"));
  EXPECT_THAT(missing, HasSubstr("\"missing\":\"no store\"}"));
}
