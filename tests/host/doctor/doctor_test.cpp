// What the subcommands doctor and explain print on the simulated notebook, cause by cause, and that
// they leave the data folder as it was. Each cause is prepared as it happens: a file, a variable of
// a simulated part, or another place. diagnosis_test.cpp has the texts of all causes.

#include <windows.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include "base/date_text.h"
#include "host/notebook/notebook.h"
#include "platform/win32/owners.h"
#include "support/program_folder.h"
#include "support/scoped_variable.h"
#include "support/temp_folder.h"

using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;
using TestSupport::HostRun;
using TestSupport::ReadWholeFile;
using TestSupport::ScopedVariable;
using TestSupport::WriteWholeFile;
using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

namespace fs = std::filesystem;

const std::wstring kData = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";

/// Attributes, time of the last change and bytes of each file of the data folder.
using Content = std::map<std::wstring, std::tuple<DWORD, std::uint64_t, std::string>>;

Content DataFolder() {
  Content content;
  for (const auto& entry : fs::directory_iterator(kData)) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    GetFileAttributesExW(entry.path().c_str(), GetFileExInfoStandard, &data);
    const FILETIME changed = data.ftLastWriteTime;
    content[entry.path().filename().wstring()] = {
        data.dwFileAttributes, std::uint64_t{changed.dwHighDateTime} << 32 | changed.dwLowDateTime,
        entry.is_regular_file() ? ReadWholeFile(entry.path().wstring()) : std::string()};
  }
  return content;
}

/// The date of the day that is so many days before today, as the host sees it.
std::string DateBack(int back) {
  return FormatDateTime(ShiftKeepingHour(*GetCurrentDate(), -back * kSecondsPerDay), kDateFormat);
}

std::wstring SampleFileOf(int back) {
  const std::string date = DateBack(back);
  return kData + L"\\PcmSampleData_" + std::wstring(date.begin(), date.end()) + L".json";
}

rapidjson::Document Parsed(const HostRun& run) {
  rapidjson::Document json;
  json.Parse(run.output.c_str());
  EXPECT_FALSE(json.HasParseError()) << run.output << run.errors;
  return json;
}

/// The causes that doctor names; its exit status must agree with its answer.
std::multiset<std::string> Doctor(std::vector<std::wstring> arguments = {},
                                  const std::wstring& host = TestSupport::InstalledHost()) {
  arguments.insert(arguments.begin(), {L"doctor", L"--json"});
  const HostRun run = TestSupport::RunOnNotebook(arguments, host).host;
  const rapidjson::Document json = Parsed(run);
  std::multiset<std::string> causes;
  if (!json.IsObject()) return causes;
  EXPECT_EQ(run.exitStatus, json["canMeasure"].GetBool() ? 0U : 1U);
  for (const auto& finding : json["findings"].GetArray()) {
    causes.insert(finding["cause"].GetString());
  }
  causes.erase("fine");
  return causes;
}

/// Renames a file, or replaces its bytes, and restores it.
class ScopedFile {
 public:
  explicit ScopedFile(std::wstring path) : path_(std::move(path)), aside_(path_ + L".aside") {
    MoveFileExW(path_.c_str(), aside_.c_str(), MOVEFILE_REPLACE_EXISTING);
  }
  ScopedFile(std::wstring path, const std::string& bytes) : ScopedFile(std::move(path)) {
    WriteWholeFile(path_, bytes);
  }
  ScopedFile(const ScopedFile&) = delete;
  ScopedFile& operator=(const ScopedFile&) = delete;
  ~ScopedFile() { MoveFileExW(aside_.c_str(), path_.c_str(), MOVEFILE_REPLACE_EXISTING); }

 private:
  const std::wstring path_;
  const std::wstring aside_;
};

fs::path HostFolder() { return fs::path(TestSupport::InstalledHost()).parent_path(); }

std::wstring Collector() { return (HostFolder() / L"TelemetryZQXWrapper.dll").wstring(); }

/// A file that the build signs for these tests.
std::string DoctorSample(const std::wstring& name) {
  return ReadWholeFile(TestSupport::PathBesideProgram(L"doctor-samples\\" + name));
}

/// Changes the first `before` of a file to `after`.
void Replace(const std::wstring& path, const std::string& before, const std::string& after) {
  std::string text = ReadWholeFile(path);
  const std::size_t position = text.find(before);
  ASSERT_NE(position, std::string::npos) << before;
  WriteWholeFile(path, text.replace(position, before.size(), after));
}

class Doctoring : public TestSupport::OnNotebook {
 protected:
  void SetUp() override {
    OnNotebook::SetUp();
    if (IsSkipped()) return;
    fs::remove_all(kData);
  }

  static void CompleteAPass() {
    ASSERT_EQ(TestSupport::RunOnNotebook({L"serve-once", L"--json"}).host.exitStatus, 0U);
  }
};

}  // namespace

TEST_F(Doctoring, FindsAHealthyMachineAndLeavesItsDataFolderAsItWas) {
  CompleteAPass();
  // Of another machine, and a copy that a broken-off pass left.
  WriteWholeFile(SampleFileOf(3), "bm8gYmxvYg==");
  WriteWholeFile(kData + L"\\unencrypt-PcmSampleData_2001-01-01.json", "[]");
  const Content before = DataFolder();
  ASSERT_GE(before.size(), 5U);

  const auto causes = Doctor();
  EXPECT_THAT(causes, IsSupersetOf({"collector-not-asked", "samples-not-decrypted"}));
  for (const char* other : {"tool-failed", "collector-unsigned", "clock-back", "store-missing"}) {
    EXPECT_THAT(causes, Not(Contains(other)));
  }
  const HostRun text = TestSupport::RunOnNotebook({L"doctor", L"--no-tool"}).host;
  EXPECT_NE(text.output.find("\nThis machine can measure.\n"), std::string::npos) << text.output;
  EXPECT_EQ(DataFolder(), before) << "doctor changed the data folder";

  const std::string yesterday = DateBack(1);
  const std::wstring day(yesterday.begin(), yesterday.end());
  const rapidjson::Document explained =
      Parsed(TestSupport::RunOnNotebook({L"explain", day, L"--json"}).host);
  EXPECT_EQ(explained["energyWh"].GetDouble(), explained["ledgerWh"].GetDouble());
  EXPECT_STREQ(explained["relation"].GetString(), "the ledger has the same value");
  EXPECT_GT(explained["intervals"].Size(), 100U);
  const HostRun hour = TestSupport::RunOnNotebook({L"explain", day, L"10"}).host;
  EXPECT_EQ(hour.exitStatus, 0U);
  EXPECT_EQ(hour.output.find("Energy of " + yesterday + ", hour 10 (command 4)\n"), 0U);
  EXPECT_EQ(DataFolder(), before) << "explain changed the data folder";
}

TEST_F(Doctoring, AsksTheCollectorForItsStatusOnlyIfAsked) {
  const TestSupport::CollectorCalls calls;
  const ScopedVariable two(L"WATTLEAF_COLLECTOR_STATUS", L"2");
  EXPECT_THAT(Doctor({L"--no-tool"}), Contains("collector-not-asked"));
  EXPECT_THAT(calls.Lines(), Not(Contains("create")));
  EXPECT_THAT(Doctor({L"--no-tool", L"--start-collector"}), Contains("collector-status-2"));
  EXPECT_THAT(calls.Lines(), Contains("stop"));
  const ScopedVariable five(L"WATTLEAF_COLLECTOR_STATUS", L"5");
  EXPECT_THAT(Doctor({L"--no-tool", L"--start-collector"}), Contains("collector-status-5"));
}

TEST_F(Doctoring, DistinguishesTheCausesOfAnUntrustedCollector) {
  const std::string file = ReadWholeFile(Collector());
  {
    const ScopedFile missing(Collector());
    EXPECT_THAT(Doctor({L"--no-tool"}), Contains("collector-missing"));
  }
  {
    std::string bytes = file;
    bytes[bytes.size() / 2] = static_cast<char>(bytes[bytes.size() / 2] ^ 1);
    const ScopedFile altered(Collector(), bytes);
    EXPECT_THAT(Doctor({L"--no-tool"}), Contains("collector-altered"));
  }
  {
    const ScopedFile unsignedFile(Collector(), ReadWholeFile(TestSupport::InstalledHost()));
    EXPECT_THAT(Doctor({L"--no-tool"}), Contains("collector-unsigned"));
  }
  {
    const ScopedFile otherKey(Collector(), DoctorSample(L"other-key.dll"));
    const auto causes = Doctor({L"--no-tool"});
    EXPECT_THAT(causes, Contains("collector-other-key"));
    EXPECT_THAT(causes, Not(Contains("collector-not-loadable"))) << "a refused file was loaded";
  }
}

TEST_F(Doctoring, FindsATrustedCollectorThatTheSystemCannotLoad) {
  const ScopedFile unloadable(Collector(), DoctorSample(L"unloadable.dll"));
  const HostRun run = TestSupport::RunOnNotebook({L"doctor", L"--no-tool"}).host;
  EXPECT_EQ(run.exitStatus, 1U);
  EXPECT_THAT(run.output, HasSubstr(" collector   error 126: "));
  EXPECT_THAT(run.output, HasSubstr("cause: collector-not-loadable\n"));
}

TEST_F(Doctoring, FindsACollectorOutsideTheProtectedPlaces) {
  const TestSupport::TempFolder elsewhere;
  for (const auto& entry : fs::directory_iterator(HostFolder())) {
    if (entry.is_regular_file())
      fs::copy_file(entry.path(), elsewhere.File(entry.path().filename()));
  }
  const auto causes = Doctor({L"--no-tool"}, elsewhere.File(L"wattleaf_host.exe"));
  EXPECT_THAT(causes, Contains("collector-place"));
  EXPECT_THAT(causes, Not(Contains("collector-other-key")));
  EXPECT_THAT(causes, Not(Contains("collector-not-asked"))) << "a refused file was loaded";
}

TEST_F(Doctoring, DistinguishesTheCausesOfAnUnsupportedPlatform) {
  for (const auto& [word, cause] : {std::pair(L"flag-clear", "firmware-flag-clear"),
                                    std::pair(L"no-firmware-namespace", "firmware-not-reached"),
                                    std::pair(L"oem-empty", "oem-marker-missing"),
                                    std::pair(L"no-system-namespace", "oem-strings-not-read")}) {
    const ScopedVariable firmware(L"WATTLEAF_FIRMWARE", word);
    EXPECT_THAT(Doctor({L"--no-tool"}), Contains(cause));
  }
}

TEST_F(Doctoring, DistinguishesTheFailuresOfTheEnergyTool) {
  {
    const ScopedVariable status(L"WATTLEAF_POWERCFG_STATUS", L"7");
    EXPECT_THAT(Doctor(), Contains("tool-failed"));
  }
  for (const auto& [output, cause] :
       {std::pair(L"nothing", "tool-no-report"), std::pair(L"broken", "report-broken")}) {
    const ScopedVariable variable(L"WATTLEAF_POWERCFG_OUTPUT", output);
    EXPECT_THAT(Doctor(), Contains(cause));
  }
  {
    const ScopedVariable only(L"WATTLEAF_POWERCFG_ONLY", L"Nuts");
    EXPECT_THAT(Doctor(), Contains("report-unnamed"));
  }
  {
    const ScopedVariable past(L"WATTLEAF_POWERCFG_NOW", L"1600000000");
    EXPECT_THAT(Doctor(), Contains("report-old"));
  }
}

TEST_F(Doctoring, FindsWhatIsWrongInTheStore) {
  CompleteAPass();
  const auto before = Doctor({L"--no-tool"});
  // Some of Windows' own components have no name.
  EXPECT_THAT(before, Contains("program-unnamed"));
  for (const char* cause : {"program-renamed", "ranking-old", "data-folder-not-writable"}) {
    EXPECT_THAT(before, Not(Contains(cause)));
  }

  const std::wstring store = kData + L"\\Powerlog.json";
  Replace(store, R"("DisplayName":"Meadow Office")", R"("DisplayName":"Meadow Writer")");
  // As after a pass whose report failed.
  const auto lastPass = fs::last_write_time(kData + L"\\PowerConsumption.json");
  fs::last_write_time(store, lastPass - std::chrono::hours(7));
  // A user's missing rights are no obstacle under Wine; another program that lets no one write is.
  const Zq::Gantry::Platform::UniqueFileHandle folder(
      CreateFileW(kData.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  ASSERT_TRUE(static_cast<bool>(folder));
  EXPECT_THAT(Doctor({L"--no-tool"}),
              IsSupersetOf({"program-renamed", "ranking-old", "data-folder-not-writable"}));
}

TEST_F(Doctoring, FindsWhatIsWrongInTheDataFolder) {
  EXPECT_THAT(Doctor({L"--no-tool"}), IsSupersetOf({"data-folder-missing", "ledger-missing",
                                                    "store-missing", "samples-absent"}));
  const ScopedVariable period(L"WATTLEAF_COLLECTOR_PERIOD", L"900");
  CompleteAPass();
  EXPECT_THAT(Doctor({L"--no-tool"}),
              IsSupersetOf({"samples-too-far-apart", "sample-period-too-long"}));

  WriteWholeFile(SampleFileOf(-3), "x");
  SetFileAttributesW((kData + L"\\Powerlog.json").c_str(), FILE_ATTRIBUTE_READONLY);
  WriteWholeFile(kData + L"\\PowerConsumption.json", R"([{"Key")");
  fs::create_directory(kData + L"\\Powerlog.xml");
  EXPECT_THAT(Doctor({L"--no-tool"}), IsSupersetOf({"clock-back", "store-not-writable",
                                                    "ledger-unreadable", "report-unreadable"}));
  SetFileAttributesW((kData + L"\\Powerlog.json").c_str(), FILE_ATTRIBUTE_NORMAL);
}
