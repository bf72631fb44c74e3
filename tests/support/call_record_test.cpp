#include "support/call_record.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "logging/trace_logger.h"
#include "support/log_capture.h"

using testing::ElementsAre;
using testing::IsEmpty;
using TestSupport::CallRecord;
using TestSupport::LogCapture;

TEST(CallRecord, KeepsLinesAndLogLinesInOneOrder) {
  CallRecord record;
  const LogCapture log(record);
  record.Add("load");
  Zq::Gantry::Logging::LogManager::GetLogger()->LogWarning(L"slow, %d ms", 7);
  record.Add("free");
  EXPECT_THAT(record.Lines(), ElementsAre("load", "log warning: slow, 7 ms", "free"));
}

TEST(CallRecord, SelectsLinesByTheirBeginnings) {
  CallRecord record;
  for (const char* line : {"log info: start", "start", "wait 90000", "stop"}) record.Add(line);
  EXPECT_THAT(record.LinesOf({"wait", "st"}), ElementsAre("start", "wait 90000", "stop"));
}

TEST(CallRecord, IsEmptyAfterClear) {
  CallRecord record;
  record.Add("load");
  record.Clear();
  EXPECT_THAT(record.Lines(), IsEmpty());
}

TEST(CallRecord, WaitsForALineFromAnotherThread) {
  CallRecord record;
  record.Add("wait 90000");
  std::jthread other([&record] { record.Add("wait 90000"); });
  EXPECT_TRUE(record.WaitFor("wait 90000", 2));
}
