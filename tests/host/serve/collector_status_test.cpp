// The statuses that a collector returns and the exceptions that it throws, through the shipped
// library: the result of command 7, the lines of the log, and whether the collector stays loaded.

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include "host/notebook/notebook.h"
#include "support/scoped_variable.h"

using testing::ElementsAreArray;
using TestSupport::CollectorCalls;
using TestSupport::NotebookRun;
using TestSupport::OnNotebook;
using TestSupport::RunOnNotebook;
using TestSupport::ScopedVariable;

namespace {

constexpr char kLoaded[] = R"([info] [] Loaded DataCollector library\n)";
constexpr char kStandardException[] =
    R"([error] [] Exception in  StartCollection() - sensor at 100% of %s, %d and %n.\n)";
constexpr char kOtherException[] = R"([error] [] Exception in  StartCollection() - \n)";

struct Outcome {
  const char* support;             // the text of command 7
  std::vector<std::string> lines;  // the log's lines about the collector
  std::vector<std::string> calls;  // into the collector, and its unloading
};

std::string SupportOf(const rapidjson::Document& report) {
  return report["commands"][6]["text"].GetString();
}

/// The lines about the collector and about a pass; each pass logs "Date:". The name of the data
/// folder also contains "DataCollector".
std::vector<std::string> OwnLines(const std::vector<std::string>& log) {
  std::vector<std::string> own;
  for (const std::string& line : log) {
    for (const char* part : {" DataCollector ", " DataCollector.", "StartCollection()", "Date:"}) {
      if (line.find(part) == std::string::npos) continue;
      own.push_back(line);
      break;
    }
  }
  return own;
}

class HostCollectorStart : public OnNotebook {
 protected:
  /// Runs the host, which completes no pass, and compares the outcome.
  static void ExpectNoPassAnd(const Outcome& expected) {
    const CollectorCalls calls;
    const NotebookRun run = RunOnNotebook({L"serve-once", L"--json"});
    EXPECT_EQ(run.host.exitStatus, 3U) << run.host.errors;
    rapidjson::Document report;
    ASSERT_FALSE(report.Parse(run.host.output.c_str()).HasParseError()) << run.host.output;
    EXPECT_STREQ(report["pass"].GetString(), "not started");
    EXPECT_EQ(SupportOf(report), expected.support);
    EXPECT_STREQ(report["commands"][9]["text"].GetString(), "false");
    EXPECT_THAT(OwnLines(run.log), ElementsAreArray(expected.lines));
    EXPECT_THAT(calls.Lines(), ElementsAreArray(expected.calls));
  }

  static void ExpectAtStatus(const wchar_t* status, const Outcome& expected) {
    const ScopedVariable variable(L"WATTLEAF_COLLECTOR_STATUS", status);
    ExpectNoPassAnd(expected);
  }

  static void ExpectAtFailure(const std::wstring& failure, const Outcome& expected) {
    const ScopedVariable variable(L"WATTLEAF_COLLECTOR_FAILURE", failure);
    ExpectNoPassAnd(expected);
  }
};

const std::vector<std::string> kKept = {"create", "load", "callback", "start"};
const std::vector<std::string> kUnloaded = {"create", "load",    "callback",
                                            "start",  "destroy", "unload"};

}  // namespace

TEST_F(HostCollectorStart, StatusMinusOneLogsFirmwareUpdateAndKeepsTheCollectorLoaded) {
  ExpectAtStatus(
      L"-1", {"-1",
              {kLoaded,
               R"([error] [] DataCollector StartCollecting() failed. Firmware update required\n)"},
              kKept});
}

TEST_F(HostCollectorStart, StatusZeroLogsNotSupportedAndKeepsTheCollectorLoaded) {
  ExpectAtStatus(
      L"0",
      {"0",
       {kLoaded, R"([error] [] DataCollector StartCollecting() failed. Device not supported.\n)"},
       kKept});
}

TEST_F(HostCollectorStart, UnknownStatusUnloadsTheCollectorWithoutALogLine) {
  for (const wchar_t* status : {L"2", L"7"}) {
    SCOPED_TRACE(testing::Message() << "status " << status);
    ExpectAtStatus(status, {"1", {kLoaded}, kUnloaded});
  }
}

TEST_F(HostCollectorStart, MissingStatusIsLoggedAndUnloadsTheCollector) {
  ExpectAtStatus(
      L"missing",
      {"1", {kLoaded, R"([error] [] DataCollector StartCollecting() failed.\n)"}, kUnloaded});
}

TEST_F(HostCollectorStart, FalseFromOnLoadIsLoggedAndUnloadsTheCollector) {
  ExpectAtStatus(L"onload-false", {"1",
                                   {kLoaded, R"([error] [] DataCollector OnLoad() failed.\n)"},
                                   {"create", "load", "destroy", "unload"}});
}

TEST_F(HostCollectorStart, StandardExceptionIsLoggedWithItsTextAndUnloadsTheCollector) {
  ExpectAtFailure(L"load standard",
                  {"1", {kLoaded, kStandardException}, {"create", "load", "destroy", "unload"}});
  ExpectAtFailure(
      L"callback standard",
      {"1", {kLoaded, kStandardException}, {"create", "load", "callback", "destroy", "unload"}});
  ExpectAtFailure(L"start standard", {"1", {kLoaded, kStandardException}, kUnloaded});
}

TEST_F(HostCollectorStart, OtherExceptionIsLoggedWithoutTextAndUnloadsTheCollector) {
  ExpectAtFailure(L"load other",
                  {"1", {kLoaded, kOtherException}, {"create", "load", "destroy", "unload"}});
  ExpectAtFailure(
      L"callback other",
      {"1", {kLoaded, kOtherException}, {"create", "load", "callback", "destroy", "unload"}});
  ExpectAtFailure(L"start other", {"1", {kLoaded, kOtherException}, kUnloaded});
}

TEST_F(HostCollectorStart, ExceptionFromTheFactoryIsLoggedAndUnloadsTheCollector) {
  ExpectAtFailure(L"create standard", {"1", {kStandardException}, {"create", "unload"}});
  ExpectAtFailure(L"create other", {"1", {kOtherException}, {"create", "unload"}});
}

TEST_F(HostCollectorStart, ExceptionFromTheDestructorIsDropped) {
  const ScopedVariable status(L"WATTLEAF_COLLECTOR_STATUS", L"7");
  for (const wchar_t* failure : {L"destroy standard", L"destroy other"}) {
    SCOPED_TRACE(testing::Message() << failure);
    ExpectAtFailure(failure, {"1", {kLoaded}, kUnloaded});
  }
}
