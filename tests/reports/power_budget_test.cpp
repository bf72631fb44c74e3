#include "reports/power_budget.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "base/json_document.h"
#include "base/scratch_folder.h"
#include "reports/log_rows.h"
#include "reports/power_store.h"
#include "reports/report_times.h"

// The next pass can read every store that a pass writes.

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::RowsOf;
using TestSupport::ScratchFolder;
using TestSupport::TimeAt;

namespace {

constexpr std::int64_t kLongestEnergy = std::numeric_limits<std::int64_t>::min();

/// A log, saved as a store.
class SavedStore {
 public:
  explicit SavedStore(const PowerLog& log) {
    EXPECT_TRUE(WritePowerStore(folder_.File("store.json").wstring(), log));
  }

  std::size_t Bytes() const { return std::filesystem::file_size(folder_.File("store.json")); }

  std::unique_ptr<GenericDocument> Load(std::size_t largestBytes = kLargestPowerStoreBytes,
                                        std::size_t mostOpenValues = kMostOpenStoreValues) const {
    return std::unique_ptr<GenericDocument>(
        LoadJsonDocument(folder_.File("store.json").wstring(), {largestBytes, mostOpenValues}));
  }

 private:
  const ScratchFolder folder_;
};

}  // namespace

TEST(StoredRowBytes, EqualsTheWrittenSizeForEachByteOfAName) {
  const RowTime time = TimeAt("2026-11-14:02:10:46");
  for (int byte = 0; byte < 256; ++byte) {
    const std::string name(3, static_cast<char>(byte));
    PowerLog log;
    log.Append({name, "", time, kLongestEnergy});
    log.Append({"", name + name, time, kLongestEnergy});
    ASSERT_EQ(log.Size(), 2U);
    std::size_t bytes = 1;
    for (const PowerLogRecord& row : RowsOf(log)) {
      bytes += StoredRowBytes(WrittenBytes(row.Name), WrittenBytes(row.DisplayName));
    }
    EXPECT_EQ(SavedStore(log).Bytes(), bytes) << byte;
  }
}

TEST(StoredRowBytes, CountsEveryEnergyAsTheLongest) {
  const RowTime time = TimeAt("2026-11-14:02:10:46");
  PowerLog shortest;
  shortest.Append({"a", "b", time, 0});
  PowerLog longest;
  longest.Append({"a", "b", time, kLongestEnergy});
  const std::size_t bytes = SavedStore(longest).Bytes();
  EXPECT_EQ(1 + StoredRowBytes(1, 1), bytes);
  EXPECT_EQ(SavedStore(shortest).Bytes(), bytes - std::string("-922337203685477580").size());
}

TEST(PowerBudget, LimitsFollowFromNineJsonValuesPerRow) {
  // The largest number of rows that LoadJsonDocument reads: (8,000,000 - 1) / 9.
  EXPECT_EQ(PowerStoreLimits().rows, 888'888U);
  EXPECT_EQ(PowerStoreLimits().fileBytes, 128U * 1024 * 1024);
}

TEST(PowerBudget, NextPassReadsAStoreOfTheLargestSize) {
  // One bracket, and 98 bytes of each row besides the name.
  const PowerStoreLimits limits{.fileBytes = 1 + 3 * (98 + 1000)};
  PowerLog log(limits);
  for (const char letter : std::string("abcd")) {
    log.Append({std::string(1000, letter), "", TimeAt("2026-11-14:02:00:00"), kLongestEnergy});
  }
  const SavedStore store(log);
  EXPECT_EQ(store.Bytes(), limits.fileBytes);
  const auto next = store.Load(limits.fileBytes);
  ASSERT_TRUE(next);
  EXPECT_EQ(next->Size(), 3U);
}

TEST(PowerBudget, NextPassReadsAStoreOfTheMostRows) {
  // Open while the fifth row is read: the array, four rows, and nine values of the fifth row.
  PowerLog log;
  for (const char* name : {"a", "b", "c", "d", "e"}) {
    log.Append({name, "", TimeAt("2026-11-14:02:00:00"), kLongestEnergy});
  }
  const SavedStore store(log);
  EXPECT_TRUE(store.Load(kLargestPowerStoreBytes, 1 + 4 + 9));
  EXPECT_FALSE(store.Load(kLargestPowerStoreBytes, 1 + 4 + 8));
}

TEST(PowerBudget, NextPassReadsARowOfTheLongestNames) {
  // A zero has six bytes in the file: 16 MiB - 98 = 6 * 2,796,186 + 2.
  const std::string name(2'796'186, '\0');
  const RowTime time = TimeAt("2026-11-14:02:00:00");
  PowerLog log;
  log.Append({name + "abc", "", time, kLongestEnergy});
  log.Append({name, "abc", time, kLongestEnergy});
  EXPECT_EQ(log.Size(), 0U);
  log.Append({name + "ab", "", time, kLongestEnergy});
  log.Append({"", name + "ab", time, kLongestEnergy});
  ASSERT_EQ(log.Size(), 2U);
  const auto next = SavedStore(log).Load();
  ASSERT_TRUE(next);
  EXPECT_EQ((*next)[0]["Name"].GetStringLength(), name.size() + 2);
  EXPECT_EQ((*next)[1]["DisplayName"].GetStringLength(), name.size() + 2);
}
