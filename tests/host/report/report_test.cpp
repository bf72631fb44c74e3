// The page of `report` on the simulated notebook, with development keys. Its bars and labels are
// compared with the answers by tools/check-report-page.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <cstdio>
#include <string>

#include "answers/answer.h"
#include "base/utf8_text.h"
#include "host/notebook/notebook.h"
#include "host/notebook/pass_answers.h"
#include "host/report/sample_figures.h"
#include "platform/win32/owners.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

using testing::HasSubstr;
using TestSupport::AnswersAfterAPass;
using TestSupport::AnswerText;
using TestSupport::Count;
using TestSupport::NotebookRun;
using TestSupport::ReadWholeFile;
using TestSupport::RunOnNotebook;
using TestSupport::ScopedVariable;

namespace {

class HostReport : public TestSupport::OnNotebook {};

std::string TwoDigitText(double value) {
  char text[64];
  std::snprintf(text, sizeof(text), "%.2f", value);
  return text;
}

}  // namespace

TEST_F(HostReport, HasTheFiguresOfTheCommandsAndTheIconsOfApplications) {
  const rapidjson::Document answers = AnswersAfterAPass();
  const TestSupport::TempFolder folder;
  const NotebookRun run = RunOnNotebook({L"report", folder.File(L"page.html")});
  EXPECT_EQ(run.host.exitStatus, 0u);
  EXPECT_EQ(run.host.errors, "");
  const std::wstring path = folder.File(L"page.html");
  EXPECT_EQ(run.host.output, Zq::Gantry::Server::Services::Wattleaf::ToUtf8(path) + "\n");
  const std::string page = ReadWholeFile(path);
  EXPECT_THAT(page, HasSubstr("<span id=\"average\">" +
                              TwoDigitText(std::stod(AnswerText(answers, 1))) + "</span>"));
  EXPECT_THAT(page, HasSubstr("<span id=\"trees\">" +
                              TwoDigitText(std::stod(AnswerText(answers, 3))) + "</span>"));
  EXPECT_THAT(page, HasSubstr(">Supported</span>"));
  const auto days = WattleafHost::TryReadSeries(AnswerText(answers, 5));
  ASSERT_TRUE(days.has_value());
  for (const auto& day : days->entries) {
    if (day.value == 0.0) continue;
    EXPECT_THAT(page, HasSubstr("<title>" + day.label + ": " + TwoDigitText(day.value) + " Wh<"));
  }
  const auto ranking = WattleafHost::TryReadRanking(AnswerText(answers, 2));
  ASSERT_TRUE(ranking.has_value());
  EXPECT_EQ(Count(page, "<tr role=\"row\" class=\"one\">"), static_cast<int>(ranking->size()));
  // Of packaged programs and of desktop programs, whose icons come from a simulated call.
  EXPECT_GE(Count(page, "src=\"data:image/png;base64,iVBORw0KGgo"), 10);
}

TEST_F(HostReport, DaysOptionLimitsTheApplications) {
  const TestSupport::TempFolder folder;
  EXPECT_EQ(RunOnNotebook({L"report", folder.File(L"page.html"), L"--days", L"0"}).host.exitStatus,
            0u);
  EXPECT_THAT(ReadWholeFile(folder.File(L"page.html")),
              HasSubstr("No figures: no energy in the period."));
}

TEST_F(HostReport, LeavesNoIconsInTheFolderForTemporaryFiles) {
  const TestSupport::TempFolder folder;
  const TestSupport::TempFolder temporary;
  const ScopedVariable place(L"TMP", temporary.Path());
  const NotebookRun run = RunOnNotebook({L"report", folder.File(L"page.html")});
  EXPECT_EQ(run.host.exitStatus, 0u) << run.host.errors;
  WIN32_FIND_DATAW entry{};
  const Zq::Gantry::Platform::UniqueFindHandle search(
      FindFirstFileW(temporary.File(L"wattleaf-host-*").c_str(), &entry));
  EXPECT_FALSE(search);
}

TEST_F(HostReport, EndsWithStatus5IfThePageCannotBeWritten) {
  const NotebookRun run = RunOnNotebook({L"report", L"C:\\missing\\page.html"});
  EXPECT_EQ(run.host.exitStatus, 5u);
  EXPECT_THAT(run.host.errors, HasSubstr("cannot write C:\\missing\\page.html"));
  EXPECT_EQ(run.host.output, "");
}
