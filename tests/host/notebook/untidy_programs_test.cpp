// The service with desktop programs, parts of Windows and services as untidy as those of real
// notebooks.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <utility>

#include "host/notebook/untidy_applications.h"
#include "support/scoped_variable.h"

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;
using TestSupport::IconName;
using TestSupport::ScopedVariable;

namespace {

class UntidyPrograms : public TestSupport::UntidyApplications {};

/// Removes a program from the machine's list of installed ones; the destructor adds it again.
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

TEST_F(UntidyPrograms, ComponentsOfWindowsAndServicesCountInTheTotalOnly) {
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

TEST_F(UntidyPrograms, ProgramOfOneUserHasANameButDoesNotRank) {
  EXPECT_THAT(Rank(L"fennel.exe"), IsEmpty());
  EXPECT_THAT(StoredNames(),
              ElementsAre(Pair("users\\wren\\AppData\\Local\\Programs\\Fennel\\fennel.exe",
                               "Fennel Messenger")));
}

TEST_F(UntidyPrograms, ProgramInProgramFilesX86RanksWithItsIcon) {
  const auto ranking = Rank(L"sedge.exe");
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Sedge Player");
  EXPECT_EQ(IconName(ranking[0]), "Sedge Player.png");
  EXPECT_EQ(Icon(L"Sedge Player.png").substr(1, 3), "PNG");
}

TEST_F(UntidyPrograms, RemovedProgramsAndPackagesHaveNoName) {
  EXPECT_THAT(Rank(L"bilberry.exe|teasel.exe|Plum.Sketch"), IsEmpty());
  EXPECT_THAT(StoredNames(),
              UnorderedElementsAre(Pair("Program Files\\Bilberry\\bilberry.exe", ""),
                                   Pair("Program Files (x86)\\Teasel\\teasel.exe", ""),
                                   Pair("Plum.Sketch_2.0.0.0_x64__n6s1d8k4q2v7h", "")));
}

TEST_F(UntidyPrograms, ProgramRemovedAfterItsRowsWereStoredDoesNotRank) {
  constexpr wchar_t kKey[] =
      L"SOFTWARE\\WOW6432Node\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sedge Player 2.0.0.0";
  ASSERT_EQ(Rank(L"sedge.exe").size(), 1u);

  const RemovedFromList removed(kKey, L"Sedge Player");
  const ScopedVariable noNewReport(L"WATTLEAF_POWERCFG_STATUS", L"5");
  EXPECT_THAT(Rank(L"sedge.exe"), IsEmpty());
  EXPECT_THAT(StoredNames(),
              ElementsAre(Pair("Program Files (x86)\\Sedge\\sedge.exe", "Sedge Player")));
}

TEST_F(UntidyPrograms, TwoProgramsOfOneVersionAreTwoEntries) {
  const auto ranking = Rank(L"meadow.exe|harbor.exe");
  ASSERT_EQ(ranking.size(), 2u);
  EXPECT_THAT((std::set<std::string>{ranking[0].name, ranking[1].name}),
              ElementsAre("Harbor Mail", "Meadow Office"));
}

TEST_F(UntidyPrograms, TwoVersionsOfOneProgramAreOneEntry) {
  const auto ranking = Rank(L"plover.exe");
  EXPECT_EQ(StoredNames().size(), 2u);
  ASSERT_EQ(ranking.size(), 1u);
  EXPECT_EQ(ranking[0].name, "Plover Editor");
  EXPECT_NEAR(ranking[0].share, StoredShare("plover.exe"), 0.01);
}

TEST_F(UntidyPrograms, ProgramRegisteredWithItsVersionInTheNameDoesNotRank) {
  EXPECT_THAT(Rank(L"sorrel.exe"), IsEmpty());
  EXPECT_THAT(StoredNames(), ElementsAre(Pair("Program Files\\Sorrel\\sorrel.exe", "Sorrel Sync")));
}

TEST_F(UntidyPrograms, ProgramWithANameInTwoScriptsLosesOneOfThemAndDoesNotRank) {
  EXPECT_THAT(Rank(L"glowworm.exe|brasserie.exe"), IsEmpty());
  EXPECT_THAT(
      StoredNames(),
      UnorderedElementsAre(Pair("Program Files\\Glowworm\\glowworm.exe", "Glowworm ??????"),
                           Pair("Program Files\\Brasserie\\brasserie.exe", "Brasserie Caf\xE9")));
}

TEST_F(UntidyPrograms, ProgramWithAPathOutsideAsciiHasNoName) {
  EXPECT_THAT(Rank(L"berblick.exe"), IsEmpty());
  EXPECT_THAT(StoredNames(), ElementsAre(Pair("Program Files\\\xC3\x9C"
                                              "berblick\\\xC3\xBC"
                                              "berblick.exe",
                                              "")));
}
