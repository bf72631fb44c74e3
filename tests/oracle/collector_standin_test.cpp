#include <gtest/gtest.h>

#include <windows.h>

#include <dpapi.h>
#include <wincrypt.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/plain_file.h"
#include "collection/data_collector.h"
#include "notebook_model.h"
#include "platform/win32/owners.h"
#include "support/temp_folder.h"

namespace {

namespace fs = std::filesystem;
using TestSupport::ReadWholeFile;
using TestSupport::TempFolder;
using Zq::Gantry::Platform::UniqueLocalBlock;
using Zq::Gantry::Platform::UniqueModule;
using Zq::Gantry::Server::Services::Wattleaf::CreateDirectoryTree;
using Zq::Gantry::Server::Services::Wattleaf::DataCollector;

constexpr wchar_t kDataFolder[] = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
constexpr long long kFridayNoon = 1'778'846'400;  // 2026-05-15 12:00:00 UTC
constexpr long long kDaySeconds = 86400;
constexpr long long kPeriodSeconds = 300;

int g_callbackCalls = 0;
int g_callbackItems = 0;

void CountItems(const char**, int count) {
  ++g_callbackCalls;
  g_callbackItems += count;
}

/// The stand-in of the collector. The data folder has no sample files before and after a test.
class CollectorStandin : public testing::Test {
 protected:
  CollectorStandin() {
    EXPECT_TRUE(CreateDirectoryTree(kDataFolder));
    RemoveSamples();
    Set(L"STATUS", L"1");
    Set(L"DAYS", L"6");
    Set(L"SEED", L"3");
    Set(L"PERIOD", std::to_wstring(kPeriodSeconds));
    Set(L"NOW", std::to_wstring(kFridayNoon));
    Set(L"TRUTH", TruthPath());
    g_callbackCalls = 0;
    g_callbackItems = 0;
  }
  ~CollectorStandin() override {
    RemoveSamples();
    for (const wchar_t* name : {L"FAILURE", L"CALLS"}) Set(name, L"");
  }

  static void Set(const std::wstring& name, const std::wstring& value) {
    SetEnvironmentVariableW((L"WATTLEAF_COLLECTOR_" + name).c_str(), value.c_str());
  }
  std::wstring TruthPath() const { return folder_.File(L"truth.json"); }

  template <typename Function>
  Function* Find(const char* name) const {
    return reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(GetProcAddress(module_.get(), name)));
  }
  std::unique_ptr<DataCollector> Create() const {
    return std::unique_ptr<DataCollector>(Find<DataCollector*()>("CreateZQXExportClass")());
  }
  void Advance(long long now) const { Find<void(long long)>("AdvanceCollector")(now); }

  void Unload() { module_.reset(); }

  static std::wstring SamplePath(const std::wstring& date) {
    return std::wstring(kDataFolder) + L"\\PcmSampleData_" + date + L".json";
  }
  static std::set<std::wstring> SampleFiles() {
    std::set<std::wstring> names;
    for (const auto& entry : fs::directory_iterator(kDataFolder)) {
      const std::wstring name = entry.path().filename().wstring();
      if (name.starts_with(L"PcmSampleData_")) names.insert(name);
    }
    return names;
  }

 private:
  static void RemoveSamples() {
    for (const std::wstring& name : SampleFiles()) fs::remove(fs::path(kDataFolder) / name);
  }

  TempFolder folder_;
  UniqueModule module_{LoadLibraryW(L"TelemetryZQXWrapper.dll")};
};

/// The content of a sample file without Base64 and encryption.
std::string DecryptSampleFile(const std::wstring& path) {
  const std::string text = ReadWholeFile(path);
  const auto chars = static_cast<DWORD>(text.size());
  DWORD size = 0;
  CryptStringToBinaryA(text.data(), chars, CRYPT_STRING_BASE64, nullptr, &size, nullptr, nullptr);
  std::string blob(size, '\0');
  auto* bytes = reinterpret_cast<BYTE*>(blob.data());
  CryptStringToBinaryA(text.data(), chars, CRYPT_STRING_BASE64, bytes, &size, nullptr, nullptr);

  DATA_BLOB in{size, bytes};
  DATA_BLOB out{};
  if (!CryptUnprotectData(&in, nullptr, nullptr, nullptr, nullptr, CRYPTPROTECT_LOCAL_MACHINE,
                          &out)) {
    return {};
  }
  const UniqueLocalBlock owner(out.pbData);
  return {reinterpret_cast<const char*>(out.pbData), out.cbData};
}

TEST_F(CollectorStandin, ReturnsTheRequestedStatus) {
  for (const int status : {-1, 0, 7}) {
    Set(L"STATUS", std::to_wstring(status));
    EXPECT_EQ(Create()->StartCollecting({0}).at(0), status);
  }
  EXPECT_TRUE(SampleFiles().empty());
}

TEST_F(CollectorStandin, CanOmitTheStatus) {
  Set(L"STATUS", L"missing");
  EXPECT_TRUE(Create()->StartCollecting({0}).empty());
}

TEST_F(CollectorStandin, CanFailToLoad) {
  EXPECT_TRUE(Create()->OnLoad());
  Set(L"STATUS", L"onload-false");
  EXPECT_FALSE(Create()->OnLoad());
}

TEST_F(CollectorStandin, ThrowsOnlyInTheNamedCall) {
  Set(L"FAILURE", L"start standard");
  EXPECT_TRUE(Create()->OnLoad());
  EXPECT_THROW(Create()->StartCollecting({0}), std::runtime_error);
  Set(L"FAILURE", L"load other");
  EXPECT_THROW(Create()->OnLoad(), int);
  Set(L"FAILURE", L"create standard");
  EXPECT_THROW(Create(), std::runtime_error);
}

TEST_F(CollectorStandin, RecordsEachCallAndItsUnloading) {
  const TempFolder records;
  const std::wstring path = records.File(L"calls.txt");
  Set(L"CALLS", path);
  Set(L"STATUS", L"0");
  {
    const auto collector = Create();
    collector->OnLoad();
    collector->SetDataCallback(&CountItems);
    collector->StartCollecting({0});
    collector->StopCollecting({0});
  }
  Unload();
  EXPECT_EQ(ReadWholeFile(path), "create\nload\ncallback\nstart\nstop\ndestroy\nunload\n");
}

TEST_F(CollectorStandin, WritesDaysAndTheTruthFileAndCallsBackOnce) {
  const auto collector = Create();
  collector->SetDataCallback(&CountItems);
  EXPECT_EQ(collector->StartCollecting({0}).at(0), 1);

  EXPECT_EQ(g_callbackCalls, 1);
  EXPECT_EQ(g_callbackItems, 1);
  EXPECT_GE(SampleFiles().size(), 3U);
  EXPECT_LE(SampleFiles().size(), 6U);
  EXPECT_EQ(*SampleFiles().rbegin(), L"PcmSampleData_2026-05-15.json");
  EXPECT_TRUE(ReadWholeFile(TruthPath()).starts_with("{\"days\":[{\"date\":\"2026-05-1"));
}

TEST_F(CollectorStandin, EncryptsTextInUtf16) {
  Create()->StartCollecting({0});
  const std::string content = DecryptSampleFile(SamplePath(L"2026-05-15"));
  ASSERT_EQ(content.size() % 2, 0U);
  std::string text;
  for (std::size_t i = 0; i < content.size(); i += 2) {
    EXPECT_EQ(content[i + 1], '\0');
    text += content[i];
  }
  EXPECT_TRUE(text.starts_with("[{\"TelemetryType\":\"P")) << text.substr(0, 40);
  EXPECT_TRUE(text.ends_with("}]"));
  // Friday noon is the present time, so there are no later samples.
  EXPECT_NE(text.find("T11:"), std::string::npos);
  EXPECT_EQ(text.find("T12:3"), std::string::npos);
}

TEST_F(CollectorStandin, WritesOnlyBase64AndLineEnds) {
  // Wine's encoder is wrong for one length in three.
  for (int seed = 1; seed <= 5; ++seed) {
    Set(L"SEED", std::to_wstring(seed));
    Create()->StartCollecting({0});
    for (const std::wstring& name : SampleFiles()) {
      const std::string text = ReadWholeFile(std::wstring(kDataFolder) + L"\\" + name);
      EXPECT_EQ(text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz"
                                       "0123456789+/=\r\n"),
                std::string::npos);
    }
  }
}

/// The first seed for which `matches` returns true for the day before yesterday, 2026-05-13.
template <typename Matches>
std::uint64_t SeedWithDay(Matches matches) {
  constexpr std::int64_t kDayNumber = kFridayNoon / kDaySeconds - 2;
  for (std::uint64_t seed = 1; seed < 10'000; ++seed) {
    if (matches(Standin::MakeDay({seed, kPeriodSeconds}, {kDayNumber, kDaySeconds}))) return seed;
  }
  throw std::logic_error("no seed has such a day");
}

/// The times of the samples in the content of a file, in order.
std::vector<std::string> SampleTimes(const std::string& content) {
  std::string text;
  for (std::size_t i = 0; i < content.size(); i += 2) text += content[i];
  const std::string name = "\"SampleTime\":\"";
  std::vector<std::string> times;
  for (auto at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
    times.push_back(text.substr(at + name.size(), 19));
  }
  return times;
}

TEST_F(CollectorStandin, WritesAnEmptyArrayForADayWithoutSamples) {
  Set(L"SEED", std::to_wstring(SeedWithDay([](const auto& day) { return day && day->empty(); })));
  Create()->StartCollecting({0});
  EXPECT_EQ(DecryptSampleFile(SamplePath(L"2026-05-13")), std::string("[\0]\0", 4));
  EXPECT_NE(ReadWholeFile(TruthPath()).find("{\"date\":\"2026-05-13\",\"samples\":[]}"),
            std::string::npos);
}

TEST_F(CollectorStandin, WritesNoFileForADayOfSleep) {
  Set(L"SEED", std::to_wstring(SeedWithDay([](const auto& day) { return !day; })));
  Create()->StartCollecting({0});
  EXPECT_FALSE(SampleFiles().empty());
  EXPECT_FALSE(SampleFiles().contains(L"PcmSampleData_2026-05-13.json"));
}

TEST_F(CollectorStandin, WritesOneStepBackOnADayOnWhichTheClockIsPutBack) {
  Set(L"SEED", std::to_wstring(SeedWithDay([](const auto& day) {
        return day && !day->empty() && day->back().clockSeconds != 0;
      })));
  Create()->StartCollecting({0});
  const auto times = SampleTimes(DecryptSampleFile(SamplePath(L"2026-05-13")));
  int steps = 0;
  for (std::size_t i = 1; i < times.size(); ++i) {
    if (times[i] < times[i - 1]) ++steps;
    EXPECT_TRUE(times[i].starts_with("2026-05-13T")) << times[i];
  }
  EXPECT_EQ(steps, 1);
}

TEST_F(CollectorStandin, CompletesOldDaysButNotDeletedFilesWhenAdvanced) {
  Create()->StartCollecting({0});
  const std::string half = ReadWholeFile(SamplePath(L"2026-05-15"));
  const std::wstring deleted = L"PcmSampleData_2026-05-13.json";
  ASSERT_TRUE(SampleFiles().contains(deleted));
  fs::remove(fs::path(kDataFolder) / deleted);

  Advance(kFridayNoon + 3 * kDaySeconds);

  EXPECT_FALSE(SampleFiles().contains(deleted));
  EXPECT_GT(ReadWholeFile(SamplePath(L"2026-05-15")).size(), half.size());
  EXPECT_TRUE(SampleFiles().contains(L"PcmSampleData_2026-05-18.json"));
  EXPECT_NE(ReadWholeFile(TruthPath()).find("\"date\":\"2026-05-18\""), std::string::npos);
}

}  // namespace
