// GetTop20PowerApps: the icons that it exports.

#include <windows.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "collection/ranking_fixture.h"
#include "import_patch.h"

using namespace TestSupport;
using namespace std::string_literals;
using Standin::ImportPatch;
using testing::StartsWith;

namespace {

using GetTop20PowerApps = RankingFixture;

}  // namespace

TEST_F(GetTop20PowerApps, CopiesLogosIntoAFolderThatItCreates) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  const std::wstring icons = folder.File(L"new\\icons");
  EXPECT_EQ(Rank(icons + L"?7"),
            LR"([{"Name":"Meadow","Icon":")" + InJson(icons) + LR"(\\Meadow.png","Value":100.0}])");
  EXPECT_EQ(ReadWholeFile(icons + L"\\Meadow.png"), "the logo");
}

TEST_F(GetTop20PowerApps, UsesAnIconDirectoryWithDotSegmentsAsGiven) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  const std::wstring icons = folder.File(L"a\\..\\b");
  EXPECT_EQ(Rank(icons + L"?7"),
            LR"([{"Name":"Meadow","Icon":")" + InJson(icons) + LR"(\\Meadow.png","Value":100.0}])");
  EXPECT_EQ(ReadWholeFile(folder.File(L"b\\Meadow.png")), "the logo");
}

TEST_F(GetTop20PowerApps, OverwritesAnIconAtEachCall) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  WriteWholeFile(folder.File(L"Meadow.png"), "an older and longer text");
  WriteWholeFile(folder.File(L"Gone.png"), "icon of an application that is not ranked");
  static_cast<void>(Rank(folder.Path() + L"?7"));
  EXPECT_EQ(ReadWholeFile(folder.File(L"Meadow.png")), "the logo");
  WriteWholeFile(folder.File(L"logo.png"), "another");
  static_cast<void>(Rank(folder.Path() + L"?7"));
  EXPECT_EQ(ReadWholeFile(folder.File(L"Meadow.png")), "another");
  EXPECT_TRUE(FileExists(folder.File(L"Gone.png")));
}

TEST_F(GetTop20PowerApps, HasNoIconWhenTheLogoIsMissing) {
  InstallPackage();
  DeleteFileW(folder.File(L"logo.png").c_str());
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  EXPECT_EQ(Rank(folder.Path() + L"?7"), LR"([{"Name":"Meadow","Icon":"","Value":100.0}])");
  EXPECT_FALSE(FileExists(folder.File(L"Meadow.png")));
}

TEST_F(GetTop20PowerApps, HasNoIconWhenTheFolderCannotBeCreated) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  EXPECT_EQ(Rank(folder.File(L"logo.png\\icons") + L"?7"),
            LR"([{"Name":"Meadow","Icon":"","Value":100.0}])");
}

TEST_F(GetTop20PowerApps, HasNoIconsBeforeTheCataloguesAreFilled) {
  WriteStore({StoreRow("Alder.App", "Packaged", "1"),
              StoreRow("\\Device\\HarddiskVolume3\\a.exe", "Desktop", "3")});
  EXPECT_EQ(Rank(folder.Path() + L"?7"), LR"([{"Name":"Packaged","Icon":"","Value":25.0}])");
}

namespace {

std::string g_program;

/// Returns a white icon for any program.
HICON WINAPI FakeIcon(HINSTANCE, char* path, WORD*, WORD*) {
  g_program = path;
  constexpr int kSide = 16;
  const std::vector<BYTE> opaque(kSide * kSide / 8, 0x00);
  const std::vector<BYTE> white(kSide * kSide / 8, 0xFF);
  return CreateIcon(nullptr, kSide, kSide, /*planes=*/1, /*bits=*/1, opaque.data(), white.data());
}

}  // namespace

TEST_F(GetTop20PowerApps, ExportsTheIconOfAnExecutableOnTheSystemDrive) {
  const ImportPatch patch("ExtractAssociatedIconExA", &FakeIcon);
  helper.win32Apps.Replace({{L"Desktop", L""}});
  WriteStore({StoreRow(helper.GetDevicePath("C:") + "\\Tools\\a.exe", "Desktop", "3")});
  const std::wstring icons = folder.File(L"icons");
  EXPECT_EQ(Rank(icons + L"?7"), LR"([{"Name":"Desktop","Icon":")" + InJson(icons) +
                                     LR"(\\Desktop.png","Value":100.0}])");
  EXPECT_EQ(g_program, "C:\\Tools\\a.exe");
  EXPECT_THAT(ReadWholeFile(icons + L"\\Desktop.png"), StartsWith("\x89PNG"));
}

TEST_F(GetTop20PowerApps, ReturnsTheIconPathWhenTheIconMayNotBeWritten) {
  const ImportPatch patch("ExtractAssociatedIconExA", &FakeIcon);
  helper.win32Apps.Replace({{L"..\\witness", L""}});
  WriteStore({StoreRow("\\Device\\Any", "..\\witness", "1")});
  const std::wstring icons = folder.File(L"icons");
  EXPECT_EQ(Rank(icons + L"?7"), LR"([{"Name":"..\\witness","Icon":")" + InJson(icons) +
                                     LR"(\\..\\witness.png","Value":100.0}])");
  EXPECT_FALSE(FileExists(folder.File(L"witness.png")));
}

TEST_F(GetTop20PowerApps, ReturnsTheIconPathWhenItsFolderCannotBeCreated) {
  const ImportPatch patch("ExtractAssociatedIconExA", &FakeIcon);
  helper.win32Apps.Replace({{L"Desktop", L""}});
  WriteStore({StoreRow("\\Device\\Any", "Desktop", "1")});
  const std::wstring icons = folder.File(L"Powerlog.json\\icons");
  EXPECT_EQ(Rank(icons + L"?7"), LR"([{"Name":"Desktop","Icon":")" + InJson(icons) +
                                     LR"(\\Desktop.png","Value":100.0}])");
}

// The path with its terminator fills the buffer of 260 bytes. With one byte more no icon is
// extracted.
TEST_F(GetTop20PowerApps, ExtractsTheIconOfAPathThatJustFitsTheBuffer) {
  const ImportPatch patch("ExtractAssociatedIconExA", &FakeIcon);
  helper.win32Apps.Replace({{L"Desktop", L""}});
  const std::string device = helper.GetDevicePath("C:");
  const std::string path = "\\" + std::string(256, 'p');
  for (const auto& [rest, extracted] : {std::pair(path, "C:" + path), std::pair(path + "p", ""s)}) {
    g_program = "none";
    WriteStore({StoreRow(device + rest, "Desktop", "1")});
    static_cast<void>(Rank(folder.Path() + L"?7"));
    EXPECT_EQ(g_program, extracted);
  }
}

TEST_F(GetTop20PowerApps, NeverWritesOutsideTheIconFolder) {
  InstallPackage();
  const std::wstring icons = folder.File(L"icons");
  WriteStore({StoreRow("Alder.App", "..\\witness", "1"), StoreRow("Alder.App", "../witness", "1"),
              StoreRow("Alder.App", "a:b", "1"), StoreRow("Alder.App", "a\0b"s, "1")});
  const std::wstring answer = Rank(icons + L"?7");
  EXPECT_NE(answer.find(LR"({"Name":"..\\witness","Icon":"","Value":25.0})"), std::wstring::npos);
  EXPECT_FALSE(FileExists(folder.File(L"witness.png")));
  EXPECT_FALSE(FileExists(icons + L"\\a"));
  EXPECT_FALSE(FileExists(icons + L"\\a.png"));
  EXPECT_TRUE(RemoveDirectoryW(icons.c_str())) << "the folder is empty";
}

TEST_F(GetTop20PowerApps, CreatesNoFolderForAPathWithAnEmbeddedNull) {
  InstallPackage();
  WriteStore({StoreRow("Alder.App", "Meadow", "1")});
  EXPECT_EQ(Rank(folder.File(L"cut") + L'\0' + L"short?7"),
            LR"([{"Name":"Meadow","Icon":"","Value":100.0}])");
  EXPECT_FALSE(FileExists(folder.File(L"cut")));
}

namespace {

std::vector<std::string> g_copies;

BOOL WINAPI RecordedIconCopy(const char* from, const char* to, BOOL failIfExists) {
  g_copies.push_back(from + "|"s + to + "|" + std::to_string(failIfExists));
  return TRUE;
}

}  // namespace

TEST_F(GetTop20PowerApps, CopiesLogosByTheBytesOfTheirNamesAndOverwrites) {
  g_copies.clear();
  const ImportPatch patch("CopyFileA", &RecordedIconCopy);
  helper.uwpApps.Replace({{"Alder", {"", "C:\\Apps\\l\xC3\xB6go.png"}}});
  WriteStore({StoreRow("Alder", "caf\xC3\xA9", "1")});
  // The directory keeps the low byte of each character: U+0141 becomes "A".
  EXPECT_EQ(Rank(folder.File(L"\x0141") + L"?7"),
            LR"([{"Name":"caf)"s + L"\x00E9" + LR"(","Icon":")" + InJson(folder.File(L"A\\caf")) +
                L"\x00E9" + LR"(.png","Value":100.0}])");
  EXPECT_THAT(g_copies,
              testing::ElementsAre("C:\\Apps\\l\xC3\xB6go.png|" +
                                   NarrowPath(folder.File(L"A\\caf")) + "\xC3\xA9.png|0"));
}

TEST_F(GetTop20PowerApps, CopiesIntoTheDriveRootWithoutADirectory) {
  g_copies.clear();
  const ImportPatch patch("CopyFileA", &RecordedIconCopy);
  helper.uwpApps.Replace({{"Alder", {"", "logo"}}});
  WriteStore({StoreRow("Alder", "Meadow", "1")});
  EXPECT_EQ(Rank(L"?7"), LR"([{"Name":"Meadow","Icon":"\\Meadow.png","Value":100.0}])");
  EXPECT_THAT(g_copies, testing::ElementsAre("logo|\\Meadow.png|0"));
}

TEST_F(GetTop20PowerApps, CreatesTheIconFolderWithoutAStore) {
  EXPECT_EQ(Rank(folder.File(L"icons") + L"?7"), L"untouched");
  EXPECT_TRUE(FileExists(folder.File(L"icons")));
}
