// What the service makes of applications as real notebooks have them.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <filesystem>
#include <map>
#include <set>
#include <stdexcept>
#include <string>
#include <utility>

#include "host_notebook.h"
#include "ranking.h"
#include "support/temp_folder.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;
using TestSupport::NotebookRun;
using TestSupport::ReadWholeFile;
using TestSupport::RunOnNotebook;
using TestSupport::ScopedVariable;
using WattleafHost::RankedApp;
using WattleafHost::TryReadRanking;

namespace {

namespace fs = std::filesystem;

constexpr wchar_t kData[] = L"C:\\ProgramData\\ZQ\\TelemetryDataCollector\\PCMCollector";
constexpr wchar_t kPackages[] = L"C:\\Program Files\\WindowsApps\\";

/// One run of the host on an empty data folder, with a report of the asked applications only.
class RudeApplications : public testing::Test {
 protected:
  void SetUp() override {
    if (!TestSupport::NotebookIsThere()) GTEST_SKIP() << "no simulated notebook on this machine";
    fs::remove_all(kData);
  }

  /// `only`: parts of identities, separated by "|".
  NotebookRun Serve(const std::wstring& only) const {
    const ScopedVariable rows(L"WATTLEAF_POWERCFG_ONLY", only);
    return RunOnNotebook({L"serve-once", L"--json", L"--icons", icons_.Path()});
  }

  /// The answer of command 2.
  static WattleafHost::Ranking RankingOf(const NotebookRun& run) {
    rapidjson::Document document;
    document.Parse(run.host.output.c_str());
    if (document.HasParseError()) throw std::runtime_error("no JSON: " + run.host.output);
    const auto& text = document["commands"][1]["text"];
    return TryReadRanking(text.IsString() ? text.GetString() : "none").value();
  }
  WattleafHost::Ranking Rank(const std::wstring& only) const { return RankingOf(Serve(only)); }

  /// The names in the store by identity, without the prefix of drive C: and rows of no identity.
  static std::map<std::string, std::string> StoredNames() {
    std::map<std::string, std::string> names;
    ForEachStored([&names](const std::string& identity, const auto& row) {
      if (!identity.empty()) names[identity] = row["DisplayName"].GetString();
    });
    return names;
  }
  /// The percentage that the rows of identities with `part` have of the store's energy.
  static double StoredShare(const std::string& part) {
    double energy = 0.0;
    double total = 0.0;
    ForEachStored([&](const std::string& identity, const auto& row) {
      const double value = row["TotalEnergy"].GetDouble();
      total += value;
      if (identity.find(part) != std::string::npos) energy += value;
    });
    return energy / total * 100.0;
  }

  std::set<std::wstring> IconFiles() const {
    std::set<std::wstring> names;
    for (const auto& entry : fs::directory_iterator(icons_.Path())) {
      names.insert(entry.path().filename().wstring());
    }
    return names;
  }
  std::string Icon(const std::wstring& name) const { return ReadWholeFile(icons_.File(name)); }
  /// A file of a package's folder of images.
  static std::string Asset(const std::wstring& package, const std::wstring& name) {
    return ReadWholeFile(kPackages + package + L"\\Assets\\" + name);
  }

 private:
  template <typename Use>
  static void ForEachStored(Use use) {
    char prefix[1024] = {};
    QueryDosDeviceA("C:", prefix, sizeof(prefix) - 1);
    rapidjson::Document store;
    store.Parse(ReadWholeFile(std::wstring(kData) + L"\\Powerlog.json").c_str());
    ASSERT_TRUE(store.IsArray());
    for (const auto& row : store.GetArray()) {
      std::string identity = row["Name"].GetString();
      if (identity.starts_with(prefix)) identity.erase(0, std::string(prefix).size() + 1);
      use(identity, row);
    }
  }

  const TestSupport::TempFolder icons_;
};

/// The file name of an entry's icon.
std::string IconName(const RankedApp& app) {
  return app.icon.substr(app.icon.find_last_of('\\') + 1);
}

}  // namespace

TEST_F(RudeApplications, OwnLogoAtTheAddressOfAUriIsNotFoundAndTheEntryHasNoIcon) {
  const auto ranking = Rank(L"Larch.Calendar");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Larch Calendar");
  EXPECT_EQ(ranking[0].icon, "");
  EXPECT_THAT(IconFiles(), IsEmpty());
}

TEST_F(RudeApplications, OwnLogoAtAPlainAddressIsTheIcon) {
  const ScopedVariable address(L"WATTLEAF_PACKAGES", L"address:plain");
  const auto ranking = Rank(L"Larch.Calendar");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Larch Calendar");
  EXPECT_EQ(IconName(ranking[0]), "Larch Calendar.png");
  EXPECT_EQ(Icon(L"Larch Calendar.png"),
            Asset(L"Larch.Calendar_1.0.0.0_x64__2j8vgd6s0a1qe", L"StoreLogo.png"));
}

TEST_F(RudeApplications, NamesLeftAsOneResourceAreOneEntryWithoutAnIcon) {
  const auto ranking = Rank(L"Alder.Wallet|Rowan.Fitness");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "ms-resource:AppName");
  EXPECT_EQ(ranking[0].icon, "");
  EXPECT_THAT(IconFiles(), IsEmpty());
  EXPECT_NEAR(ranking[0].share, StoredShare("Alder.Wallet") + StoredShare("Rowan.Fitness"), 0.01);
}

TEST_F(RudeApplications, NameLeftAsAResourceWithSlashesHasNoIcon) {
  const auto ranking = Rank(L"Aster.Camera");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "ms-resource://Aster.Camera/Resources/Title");
  EXPECT_EQ(ranking[0].icon, "");
  EXPECT_THAT(IconFiles(), IsEmpty());
}

TEST_F(RudeApplications, LogoOf200PercentIsTheIconWhereItsNameHoldsTheSize) {
  Rank(L"Poplar.Journal|Gorse.Radio");
  EXPECT_THAT(IconFiles(), ElementsAre(L"Poplar Journal.png"));
  EXPECT_EQ(Icon(L"Poplar Journal.png"),
            Asset(L"Poplar.Journal_1.0.0.0_x64__h3j6k9l2p5o8i", L"Square44x44Logo.scale-200.png"));
}

TEST_F(RudeApplications, LogoOf200PercentUnderAnotherNameIsPassedOverForTheOwnOne) {
  const ScopedVariable address(L"WATTLEAF_PACKAGES", L"address:plain");
  Rank(L"Gorse.Radio");
  EXPECT_EQ(Icon(L"Gorse Radio.png"),
            Asset(L"Gorse.Radio_6.1.0.0_x64__h3j6k9l2p5o8i", L"StoreLogo.png"));
}

TEST_F(RudeApplications, VariantForContrastOrUnplatedIsTheIconWhereItComesFirst) {
  Rank(L"Otter.Chat|Tansy.Clock|Privet.Paint");
  EXPECT_EQ(Icon(L"Otter Chat.png"),
            Asset(L"Otter.Chat_8.17.3.0_x64__m5t9yk3w7zc8n", L"Square44x44Logo.scale-100.png"));
  EXPECT_EQ(Icon(L"Tansy Clock.png"), Asset(L"Tansy.Clock_2.0.0.0_x64__d4f7g0h3j6k9l",
                                            L"Square44x44Logo.scale-100_contrast-black.png"));
  EXPECT_EQ(Icon(L"Privet Paint.png"),
            Asset(L"Privet.Paint_2.0.0.0_x64__d4f7g0h3j6k9l",
                  L"Square44x44Logo.altform-unplated_targetsize-44.png"));
}

TEST_F(RudeApplications, SeveralApplicationsOfOnePackageAreOneEntryWithTheFirstOnesLogo) {
  const auto ranking = Rank(L"Hornbeam.Suite");
  EXPECT_THAT(
      StoredNames(),
      ElementsAre(Pair("Hornbeam.Suite_16.0.0.0_x64__s2d5f8g1h4j7k!Sheets", "Hornbeam Suite"),
                  Pair("Hornbeam.Suite_16.0.0.0_x64__s2d5f8g1h4j7k!Writer", "Hornbeam Suite")));
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(Icon(L"Hornbeam Suite.png"),
            Asset(L"Hornbeam.Suite_16.0.0.0_x64__s2d5f8g1h4j7k", L"Square44x44Logo.scale-100.png"));
}

TEST_F(RudeApplications, PackageWhoseFirstApplicationHasNoVisualElementsHasItsOwnLogo) {
  const ScopedVariable address(L"WATTLEAF_PACKAGES", L"address:plain");
  Rank(L"Birch.Backup");
  EXPECT_EQ(Icon(L"Birch Backup.png"),
            Asset(L"Birch.Backup_3.3.0.0_x64__s2d5f8g1h4j7k", L"StoreLogo.png"));
}

TEST_F(RudeApplications, ComponentsOfWindowsAndServicesCountInTheTotalOnly) {
  const auto ranking = Rank(L"cobalt.exe|hearthhost.exe|svchost.exe|System");
  EXPECT_THAT(StoredNames(),
              UnorderedElementsAre(
                  Pair("Program Files\\Cobalt\\cobalt.exe", "Cobalt Photo"),
                  Pair("windows\\system32\\hearthhost.exe", "Hearth Host for Tasks"),
                  Pair("windows\\system32\\svchost.exe [HearthCache]", ""),
                  Pair("windows\\system32\\svchost.exe [LocalServiceNetwork]", ""),
                  Pair("windows\\system32\\svchost.exe [WinTide]", ""), Pair("System", "")));
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Cobalt Photo");
  EXPECT_NEAR(ranking[0].share, StoredShare("cobalt.exe"), 0.01);
  EXPECT_LT(ranking[0].share, 90.0);
}

TEST_F(RudeApplications, ProgramOfOneUserIsNamedButDoesNotRank) {
  EXPECT_THAT(Rank(L"fennel.exe"), IsEmpty());
  EXPECT_THAT(StoredNames(),
              ElementsAre(Pair("users\\wren\\AppData\\Local\\Programs\\Fennel\\fennel.exe",
                               "Fennel Messenger")));
}

TEST_F(RudeApplications, ProgramInProgramFilesX86RanksWithItsIcon) {
  const auto ranking = Rank(L"sedge.exe");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Sedge Player");
  EXPECT_EQ(IconName(ranking[0]), "Sedge Player.png");
  EXPECT_EQ(Icon(L"Sedge Player.png").substr(1, 3), "PNG");
}

TEST_F(RudeApplications, RemovedProgramsAndPackagesHaveNoName) {
  EXPECT_THAT(Rank(L"bilberry.exe|teasel.exe|Plum.Sketch"), IsEmpty());
  EXPECT_THAT(StoredNames(),
              UnorderedElementsAre(Pair("Program Files\\Bilberry\\bilberry.exe", ""),
                                   Pair("Program Files (x86)\\Teasel\\teasel.exe", ""),
                                   Pair("Plum.Sketch_2.0.0.0_x64__n6s1d8k4q2v7h", "")));
}

namespace {

/// Takes a program off the machine's list of installed ones for as long as this lives.
class RemovedFromList {
 public:
  RemovedFromList(std::wstring key, std::wstring name)
      : key_(std::move(key)), name_(std::move(name)) {
    RegDeleteKeyValueW(HKEY_LOCAL_MACHINE, key_.c_str(), kValue);
  }
  RemovedFromList(const RemovedFromList&) = delete;
  RemovedFromList& operator=(const RemovedFromList&) = delete;
  ~RemovedFromList() {
    const auto bytes = static_cast<DWORD>((name_.size() + 1) * sizeof(wchar_t));
    RegSetKeyValueW(HKEY_LOCAL_MACHINE, key_.c_str(), kValue, REG_SZ, name_.c_str(), bytes);
  }

 private:
  static constexpr wchar_t kValue[] = L"DisplayName";
  const std::wstring key_;
  const std::wstring name_;
};

}  // namespace

TEST_F(RudeApplications, ProgramThatIsRemovedAfterItsRowsWereStoredRanksNoLonger) {
  constexpr wchar_t kKey[] =
      L"SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sedge Player 2.0.0.0";
  ASSERT_EQ(Rank(L"sedge.exe").size(), 1u);

  const RemovedFromList removed(kKey, L"Sedge Player");
  const ScopedVariable noNewReport(L"WATTLEAF_POWERCFG_STATUS", L"5");
  EXPECT_THAT(Rank(L"sedge.exe"), IsEmpty());
  EXPECT_THAT(StoredNames(),
              ElementsAre(Pair("Program Files (x86)\\Sedge\\sedge.exe", "Sedge Player")));
}

TEST_F(RudeApplications, TwoProgramsOfOneVersionAreTwoEntries) {
  const auto ranking = Rank(L"meadow.exe|harbor.exe");
  ASSERT_EQ(ranking.size(), 2u);
  EXPECT_THAT((std::set<std::string>{ranking[0].name, ranking[1].name}),
              ElementsAre("Harbor Mail", "Meadow Office"));
}

TEST_F(RudeApplications, TwoVersionsOfOneProgramAreOneEntry) {
  const auto ranking = Rank(L"plover.exe");
  EXPECT_EQ(StoredNames().size(), 2u);
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Plover Editor");
  EXPECT_NEAR(ranking[0].share, StoredShare("plover.exe"), 0.01);
}

TEST_F(RudeApplications, ProgramThatIsRegisteredWithItsVersionInTheNameDoesNotRank) {
  EXPECT_THAT(Rank(L"sorrel.exe"), IsEmpty());
  EXPECT_THAT(StoredNames(), ElementsAre(Pair("Program Files\\Sorrel\\sorrel.exe", "Sorrel Sync")));
}

TEST_F(RudeApplications, TwoVersionsOfOnePackageAreOneEntryWithTheLastOnesLogo) {
  const auto ranking = Rank(L"Finch.Music");
  EXPECT_EQ(StoredNames().size(), 2u);
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(Icon(L"Finch Music.png"),
            Asset(L"Finch.Music_3.2.0.0_x64__f7c2n9xb4r5hp", L"Square44x44Logo.targetsize-44.png"));
}

TEST_F(RudeApplications, RowsOfAPackageBeforeItsUpdateHaveItsName) {
  const auto ranking = Rank(L"Otter.Chat");
  EXPECT_THAT(StoredNames(),
              ElementsAre(Pair("Otter.Chat_8.16.0.0_x64__m5t9yk3w7zc8n", "Otter Chat"),
                          Pair("Otter.Chat_8.17.3.0_x64__m5t9yk3w7zc8n", "Otter Chat")));
  EXPECT_EQ(ranking.size(), 1u);
}

TEST_F(RudeApplications, NameOfAProgramInTwoScriptsLosesOneOfThemAndDoesNotRank) {
  EXPECT_THAT(Rank(L"glowworm.exe|brasserie.exe"), IsEmpty());
  EXPECT_THAT(
      StoredNames(),
      UnorderedElementsAre(Pair("Program Files\\Glowworm\\glowworm.exe", "Glowworm ??????"),
                           Pair("Program Files\\Brasserie\\brasserie.exe", "Brasserie Caf\xE9")));
}

TEST_F(RudeApplications, ProgramAtAPathOutsideAsciiHasNoName) {
  EXPECT_THAT(Rank(L"berblick.exe"), IsEmpty());
  EXPECT_THAT(StoredNames(), ElementsAre(Pair("Program Files\\\xC3\x9C"
                                              "berblick\\\xC3\xBC"
                                              "berblick.exe",
                                              "")));
}

TEST_F(RudeApplications, NameOfAPackageInTwoScriptsIsShownByItsLowBytes) {
  const auto ranking = Rank(L"Yarrow.Books");
  ASSERT_EQ(ranking.size(), 1u);
  // U+041A U+043D U+0438 U+0433 U+0438; a file name may not hold the first one's low byte.
  EXPECT_EQ(ranking[0].name, "Yarrow \x1A=838");
  EXPECT_EQ(ranking[0].icon, "");
  EXPECT_THAT(IconFiles(), IsEmpty());
}

TEST_F(RudeApplications, LetterBeyondAsciiInTheNameOfAPackageReachesTheClientAsAReplacement) {
  const auto ranking = Rank(L"Tilia.Menu");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Tilia Caf\xEF\xBF\xBD");
  EXPECT_EQ(IconName(ranking[0]), "Tilia Caf\xEF\xBF\xBD.png");
  // In the folder it has the letter that the byte is in the system's code page.
  if (GetACP() != 1252) GTEST_SKIP() << "another code page";
  EXPECT_THAT(IconFiles(), ElementsAre(L"Tilia Caf\u00E9.png"));
}
