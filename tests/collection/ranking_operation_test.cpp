#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <thread>

#include "base/fake_attributes.h"
#include "collection/ledger_fixture.h"
#include "collection/open_helper.h"
#include "import_patch.h"
#include "reports/fake_ranking.h"
#include "support/log_capture.h"
#include "support/temp_folder.h"

using namespace TestSupport;
using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace std::string_literals;
using Standin::ImportPatch;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

std::string NarrowPath(const std::wstring& ascii) {
  std::string path;
  for (const wchar_t character : ascii) path += static_cast<char>(character);
  return path;
}

/// A path as it stands in a JSON text.
std::wstring InJson(const std::wstring& path) {
  std::wstring text;
  for (const wchar_t character : path) {
    text += character == L'\\' ? L"\\\\" : std::wstring(1, character);
  }
  return text;
}

/// A data folder with a store, and a clock that stands at 14 November 2026, 10:30:15.
class RankingOperation : public testing::Test {
 protected:
  RankingOperation() {
    FakeClock::Set("2026-11-14 10:30:15");
    helper.collectionPath = folder.Path().c_str();
  }

  ~RankingOperation() override {
    EXPECT_THAT(log.Records(), IsEmpty()) << "the ranking logs nothing, whatever happens";
  }

  std::wstring StorePath() const { return folder.File(L"Powerlog.json"); }
  void WriteStore(const std::vector<std::string>& rows) const {
    WriteWholeFile(StorePath(), Store(rows));
  }

  /// A package "Alder" whose logo is a file of the data folder.
  void InstallPackage() {
    WriteWholeFile(folder.File(L"logo.png"), "the logo");
    helper.uwpApps.Replace({{"Alder", {"Meadow", NarrowPath(folder.File(L"logo.png"))}}});
  }

  /// What becomes of a result that held "untouched".
  std::wstring Ask(std::wstring request) {
    std::wstring result = L"untouched";
    helper.GetTop20PowerApps(request, result);
    return result;
  }

  const TempFolder folder;
  const FakeClock clock;
  const LogCapture log;
  OpenHelper helper;
};

}  // namespace

TEST_F(RankingOperation, AnswersAnEmptyStoreWithTwoCharacters) {
  WriteStore({});
  EXPECT_EQ(Ask(L"?7"), L"[]");
}

TEST_F(RankingOperation, RanksTheStoreOfTheDataFolder) {
  WriteStore({StoreRow("a", "Small", "3"), StoreRow("b", "Large", "5"),
              StoreRow("c", "Old", "8", "2026-11-07:10:30:14"),
              StoreRow("d", "Oldest", "8", "2026-11-07:10:30:15")});
  EXPECT_EQ(
      Ask(L"?7"),
      LR"([{"Name":"Oldest","Icon":"","Value":50.0},{"Name":"Large","Icon":"","Value":31.25},)"
      LR"({"Name":"Small","Icon":"","Value":18.75}])");
}

TEST_F(RankingOperation, AnswersNothingOfThePastForAnInputWithoutDays) {
  WriteStore({StoreRow("a", "A", "1", "2026-11-14:10:30:14")});
  EXPECT_EQ(Ask(L""), L"[]");
  EXPECT_EQ(Ask(folder.Path()), L"[]");
  EXPECT_EQ(Ask(L"?0"), L"[]");
  EXPECT_EQ(Ask(L"?soon"), L"[]");
}

TEST_F(RankingOperation, LeavesTheInputAsItWas) {
  WriteStore({});
  std::wstring request = folder.File(L"icons") + L"?7";
  const std::wstring before = request;
  std::wstring result;
  helper.GetTop20PowerApps(request, result);
  EXPECT_EQ(request, before);
}

TEST_F(RankingOperation, CopiesLogosIntoAFolderThatItMakes) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  const std::wstring icons = folder.File(L"new\\icons");
  EXPECT_EQ(Ask(icons + L"?7"),
            LR"([{"Name":"Meadow","Icon":")" + InJson(icons) + LR"(\\Meadow.png","Value":100.0}])");
  EXPECT_EQ(ReadWholeFile(icons + L"\\Meadow.png"), "the logo");
}

TEST_F(RankingOperation, UsesADirectoryThatPointsElsewhereAsItStands) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  const std::wstring icons = folder.File(L"a\\..\\b");
  EXPECT_EQ(Ask(icons + L"?7"),
            LR"([{"Name":"Meadow","Icon":")" + InJson(icons) + LR"(\\Meadow.png","Value":100.0}])");
  EXPECT_EQ(ReadWholeFile(folder.File(L"b\\Meadow.png")), "the logo");
}

TEST_F(RankingOperation, WritesAnIconAgainAtEachCall) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  WriteWholeFile(folder.File(L"Meadow.png"), "a longer text of before");
  WriteWholeFile(folder.File(L"Gone.png"), "of an application no longer ranked");
  Ask(folder.Path() + L"?7");
  EXPECT_EQ(ReadWholeFile(folder.File(L"Meadow.png")), "the logo");
  WriteWholeFile(folder.File(L"logo.png"), "another");
  Ask(folder.Path() + L"?7");
  EXPECT_EQ(ReadWholeFile(folder.File(L"Meadow.png")), "another");
  EXPECT_TRUE(FileExists(folder.File(L"Gone.png")));
}

TEST_F(RankingOperation, HasNoIconWhereTheLogoIsMissing) {
  InstallPackage();
  DeleteFileW(folder.File(L"logo.png").c_str());
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  EXPECT_EQ(Ask(folder.Path() + L"?7"), LR"([{"Name":"Meadow","Icon":"","Value":100.0}])");
  EXPECT_FALSE(FileExists(folder.File(L"Meadow.png")));
}

TEST_F(RankingOperation, HasNoIconWhereTheFolderCannotBeMade) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  EXPECT_EQ(Ask(folder.File(L"logo.png\\icons") + L"?7"),
            LR"([{"Name":"Meadow","Icon":"","Value":100.0}])");
}

TEST_F(RankingOperation, HasNoIconsBeforeTheCataloguesAreFilled) {
  WriteStore({StoreRow("Alder.App", "Packaged", "1"),
              StoreRow("\\Device\\HarddiskVolume3\\a.exe", "Desktop", "3")});
  EXPECT_EQ(Ask(folder.Path() + L"?7"), LR"([{"Name":"Packaged","Icon":"","Value":25.0}])");
}

TEST_F(RankingOperation, RanksExecutablesOfTheDesktopCatalogue) {
  // A device that is no drive of this machine's: it has no icon.
  helper.win32Apps.Replace({{L"Desktop", L""}});
  WriteStore({StoreRow("\\Device\\Nowhere\\a.exe", "Desktop", "3"),
              StoreRow("\\Device\\Nowhere\\b.exe", "Unknown", "1")});
  EXPECT_EQ(Ask(folder.Path() + L"?7"), LR"([{"Name":"Desktop","Icon":"","Value":75.0}])");
}

namespace {

std::string g_program;

/// A white icon, whatever the program.
HICON WINAPI FakeIcon(HINSTANCE, char* path, WORD*, WORD*) {
  g_program = path;
  constexpr int kSide = 16;
  const std::vector<BYTE> opaque(kSide * kSide / 8, 0x00);
  const std::vector<BYTE> white(kSide * kSide / 8, 0xFF);
  return CreateIcon(nullptr, kSide, kSide, /*planes=*/1, /*bits=*/1, opaque.data(), white.data());
}

}  // namespace

TEST_F(RankingOperation, ExportsTheIconOfAnExecutableOfTheSystemDrive) {
  const ImportPatch patch("ExtractAssociatedIconExA", &FakeIcon);
  helper.win32Apps.Replace({{L"Desktop", L""}});
  WriteStore({StoreRow(helper.GetDevicePath("C:") + "\\Tools\\a.exe", "Desktop", "3")});
  const std::wstring icons = folder.File(L"icons");
  EXPECT_EQ(Ask(icons + L"?7"), LR"([{"Name":"Desktop","Icon":")" + InJson(icons) +
                                    LR"(\\Desktop.png","Value":100.0}])");
  EXPECT_EQ(g_program, "C:\\Tools\\a.exe");
  EXPECT_THAT(ReadWholeFile(icons + L"\\Desktop.png"), StartsWith("\x89PNG"));
}

TEST_F(RankingOperation, AnswersTheTextOfAnIconThatMayNotBeWritten) {
  const ImportPatch patch("ExtractAssociatedIconExA", &FakeIcon);
  helper.win32Apps.Replace({{L"..\\witness", L""}});
  WriteStore({StoreRow("\\Device\\Any", "..\\witness", "1")});
  const std::wstring icons = folder.File(L"icons");
  EXPECT_EQ(Ask(icons + L"?7"), LR"([{"Name":"..\\witness","Icon":")" + InJson(icons) +
                                    LR"(\\..\\witness.png","Value":100.0}])");
  EXPECT_FALSE(FileExists(folder.File(L"witness.png")));
}

TEST_F(RankingOperation, AnswersTheTextOfAnIconWhoseFolderCannotBeMade) {
  const ImportPatch patch("ExtractAssociatedIconExA", &FakeIcon);
  helper.win32Apps.Replace({{L"Desktop", L""}});
  WriteStore({StoreRow("\\Device\\Any", "Desktop", "1")});
  const std::wstring icons = folder.File(L"Powerlog.json\\icons");
  EXPECT_EQ(Ask(icons + L"?7"), LR"([{"Name":"Desktop","Icon":")" + InJson(icons) +
                                    LR"(\\Desktop.png","Value":100.0}])");
}

// The path and its end fill the buffer of 260 bytes; one byte more, and no program is asked for.
TEST_F(RankingOperation, AsksForAProgramWhosePathFillsTheBuffer) {
  const ImportPatch patch("ExtractAssociatedIconExA", &FakeIcon);
  helper.win32Apps.Replace({{L"Desktop", L""}});
  const std::string device = helper.GetDevicePath("C:");
  const std::string path = "\\" + std::string(256, 'p');
  for (const auto& [rest, asked] : {std::pair(path, "C:" + path), std::pair(path + "p", ""s)}) {
    g_program = "none";
    WriteStore({StoreRow(device + rest, "Desktop", "1")});
    Ask(folder.Path() + L"?7");
    EXPECT_EQ(g_program, asked);
  }
}

TEST_F(RankingOperation, AnswersFromTheStoreAndTheCataloguesOfTheMoment) {
  WriteStore({StoreRow("a", "A", "1")});
  EXPECT_EQ(Ask(L"?7"), LR"([{"Name":"A","Icon":"","Value":100.0}])");
  WriteStore({StoreRow("\\Device\\Any", "Desktop", "3"), StoreRow("b", "B", "1")});
  EXPECT_EQ(Ask(L"?7"), LR"([{"Name":"B","Icon":"","Value":25.0}])");
  helper.win32Apps.Replace({{L"Desktop", L""}});
  EXPECT_EQ(Ask(L"?7"),
            LR"([{"Name":"Desktop","Icon":"","Value":75.0},)"
            LR"({"Name":"B","Icon":"","Value":25.0}])");
  FakeClock::Set("2026-12-14 10:30:15");
  EXPECT_EQ(Ask(L"?7"), L"[]");
  WriteWholeFile(StorePath(), "no JSON");
  EXPECT_EQ(Ask(L"?7"), L"untouched");
}

TEST_F(RankingOperation, WritesOutsideTheFolderForNoName) {
  InstallPackage();
  const std::wstring icons = folder.File(L"icons");
  WriteStore({StoreRow("Alder.App", "..\\witness", "1"), StoreRow("Alder.App", "../witness", "1"),
              StoreRow("Alder.App", "a:b", "1"), StoreRow("Alder.App", "a\0b"s, "1")});
  const std::wstring answer = Ask(icons + L"?7");
  EXPECT_NE(answer.find(LR"({"Name":"..\\witness","Icon":"","Value":25.0})"), std::wstring::npos);
  EXPECT_FALSE(FileExists(folder.File(L"witness.png")));
  EXPECT_FALSE(FileExists(icons + L"\\a"));
  EXPECT_FALSE(FileExists(icons + L"\\a.png"));
  EXPECT_TRUE(RemoveDirectoryW(icons.c_str())) << "the folder is empty";
}

TEST_F(RankingOperation, MakesNoFolderForATextWithAZero) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  EXPECT_EQ(Ask(folder.File(L"cut") + L'\0' + L"short?7"),
            LR"([{"Name":"Meadow","Icon":"","Value":100.0}])");
  EXPECT_FALSE(FileExists(folder.File(L"cut")));
}

namespace {

std::vector<std::string> g_copies;

BOOL WINAPI NotedCopy(const char* from, const char* to, BOOL failIfExists) {
  g_copies.push_back(from + "|"s + to + "|" + std::to_string(failIfExists));
  return TRUE;
}

}  // namespace

TEST_F(RankingOperation, CopiesOverAnExistingFileByTheBytesOfBothNames) {
  g_copies.clear();
  const ImportPatch patch("CopyFileA", &NotedCopy);
  helper.uwpApps.Replace({{"Alder", {"", "C:\\Apps\\l\xC3\xB6go.png"}}});
  WriteStore({StoreRow("Alder", "caf\xC3\xA9", "1")});
  // The directory keeps the low byte of each character: U+0141 becomes "A".
  EXPECT_EQ(Ask(folder.File(L"\x0141") + L"?7"),
            LR"([{"Name":"caf)"s + L"\x00E9" + LR"(","Icon":")" + InJson(folder.File(L"A\\caf")) +
                L"\x00E9" + LR"(.png","Value":100.0}])");
  EXPECT_THAT(g_copies,
              testing::ElementsAre("C:\\Apps\\l\xC3\xB6go.png|" +
                                   NarrowPath(folder.File(L"A\\caf")) + "\xC3\xA9.png|0"));
}

TEST_F(RankingOperation, CopiesIntoTheRootOfTheDriveWithoutADirectory) {
  g_copies.clear();
  const ImportPatch patch("CopyFileA", &NotedCopy);
  helper.uwpApps.Replace({{"Alder", {"", "logo"}}});
  WriteStore({StoreRow("Alder", "Meadow", "1")});
  EXPECT_EQ(Ask(L"?7"), LR"([{"Name":"Meadow","Icon":"\\Meadow.png","Value":100.0}])");
  EXPECT_THAT(g_copies, testing::ElementsAre("logo|\\Meadow.png|0"));
}

TEST_F(RankingOperation, GivesTheTextThatEndsAtAValueThatIsNotFinite) {
  WriteStore({StoreRow("a", "A", "0"), StoreRow("b", "B", "0")});
  EXPECT_THAT(Ask(L"?7"), testing::AnyOf(LR"([{"Name":"A","Icon":"","Value":)",
                                         LR"([{"Name":"B","Icon":"","Value":)"));
}

TEST_F(RankingOperation, LeavesTheResultWithoutAStore) { EXPECT_EQ(Ask(L"?7"), L"untouched"); }

TEST_F(RankingOperation, MakesTheFolderAlsoWithoutAStore) {
  EXPECT_EQ(Ask(folder.File(L"icons") + L"?7"), L"untouched");
  EXPECT_TRUE(FileExists(folder.File(L"icons")));
}

TEST_F(RankingOperation, LeavesTheResultWhereTheStoreIsADirectory) {
  CreateDirectoryW(StorePath().c_str(), nullptr);
  EXPECT_EQ(Ask(L"?7"), L"untouched");
}

TEST_F(RankingOperation, LeavesTheResultWhereTheStoreIsALink) {
  WriteStore({StoreRow("a", "A", "1")});
  const FakeReparsePoint link(StorePath(), IO_REPARSE_TAG_SYMLINK);
  EXPECT_EQ(Ask(L"?7"), L"untouched");
}

TEST_F(RankingOperation, LeavesTheResultWhereTheStatusOfTheStoreCannotBeHad) {
  WriteStore({StoreRow("a", "A", "1")});
  const FakeStatusFailure failure(StorePath());
  EXPECT_EQ(Ask(L"?7"), L"untouched");
}

TEST_F(RankingOperation, LeavesTheResultForATextThatIsNoArray) {
  for (const char* text :
       {"", "{}", "7", "null", "[", "[1,]", "[]x", "no JSON", "\xFF\xFE[\0]\0"}) {
    WriteWholeFile(StorePath(), text);
    EXPECT_EQ(Ask(L"?7"), L"untouched") << text;
  }
}

TEST_F(RankingOperation, LeavesTheResultWhereTheStoreCannotBeOpened) {
  WriteStore({StoreRow("a", "A", "1")});
  const HANDLE locked =
      CreateFileW(StorePath().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(locked, INVALID_HANDLE_VALUE);
  EXPECT_EQ(Ask(L"?7"), L"untouched");
  CloseHandle(locked);
}

TEST_F(RankingOperation, LeavesTheResultAtAnExceptionOfAnyStep) {
  WriteStore({StoreRow("a", "A", "1")});
  FakeClock::Break();
  EXPECT_EQ(Ask(L"?7"), L"untouched");
  FakeClock::Set("2026-11-14 10:30:15");
  EXPECT_NE(Ask(L"?7"), L"untouched");
}

TEST_F(RankingOperation, TakesNoLockOfTheLedger) {
  WriteStore({});
  const std::lock_guard pass(helper.dataMutex);
  EXPECT_EQ(Ask(L"?7"), L"[]");
}

namespace {

std::mutex* g_storeMutex = nullptr;
std::vector<std::string> g_steps;

/// Notes a step and whether the store was locked at the time.
void NoteStep(const std::string& step) {
  bool isFree = false;
  std::thread([&] {
    isFree = g_storeMutex->try_lock();
    if (isFree) g_storeMutex->unlock();
  }).join();
  g_steps.push_back(step + (isFree ? ", free" : ", locked"));
}

errno_t __cdecl NotedOpen(std::FILE** file, const wchar_t* path, const wchar_t* mode) {
  NoteStep("open");
  *file = _wfopen(path, mode);
  return *file != nullptr ? 0 : EACCES;
}

BOOL WINAPI NotedStep(const char*, const char*, BOOL) {
  NoteStep("copy");
  return TRUE;
}

}  // namespace

TEST_F(RankingOperation, LocksTheStoreOnlyWhileItIsOpen) {
  g_steps.clear();
  g_storeMutex = &helper.storeMutex;
  const ImportPatch open("_wfopen_s", &NotedOpen);
  const ImportPatch copy("CopyFileA", &NotedStep);
  helper.uwpApps.Replace({{"Alder", {"", "logo"}}});
  WriteStore({StoreRow("Alder", "Meadow", "1")});
  EXPECT_NE(Ask(L"?7"), L"untouched");
  EXPECT_THAT(g_steps, testing::ElementsAre("open, locked", "copy, free"));
}
