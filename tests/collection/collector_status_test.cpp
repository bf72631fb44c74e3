#include "collection/collector_status.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

struct Row {
  const char* label;
  std::map<int, int> statusByKind;
  CollectorVerdict verdict;
  std::optional<int> state;
  bool keepsLoaded;
};

const Row kRows[] = {
    {"key missing", {}, CollectorVerdict::kNoStatus, std::nullopt, false},
    {"another key only", {{1, 1}}, CollectorVerdict::kNoStatus, std::nullopt, false},
    {"started", {{0, 1}}, CollectorVerdict::kStarted, 1, true},
    {"firmware too old", {{0, -1}}, CollectorVerdict::kFirmwareTooOld, -1, true},
    {"device not supported", {{0, 0}}, CollectorVerdict::kDeviceNotSupported, 0, true},
    {"unknown status", {{0, 7}}, CollectorVerdict::kUnknownFailure, std::nullopt, false},
    {"other keys do not count",
     {{-1, 1}, {0, 0}, {1, 1}},
     CollectorVerdict::kDeviceNotSupported,
     0,
     true},
};

}  // namespace

TEST(JudgeCollectorStatus, ReadsTheStatusAtKeyZeroOnly) {
  for (const Row& row : kRows) {
    EXPECT_EQ(JudgeCollectorStatus(row.statusByKind), row.verdict) << row.label;
  }
}

TEST(SupportStateOf, IsTheStatusOfEachKnownVerdict) {
  for (const Row& row : kRows) EXPECT_EQ(SupportStateOf(row.verdict), row.state) << row.label;
}

TEST(KeepsCollectorLoaded, IsTrueForEachKnownVerdict) {
  for (const Row& row : kRows) {
    EXPECT_EQ(KeepsCollectorLoaded(row.verdict), row.keepsLoaded) << row.label;
  }
}
