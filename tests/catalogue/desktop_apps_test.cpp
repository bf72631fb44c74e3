#include "catalogue/desktop_apps.h"

#include <gtest/gtest.h>

#include <string>

#include "catalogue/scratch_key.h"

using TestSupport::ScratchKey;
using Zq::Gantry::Server::Services::Wattleaf::AddProgramsUnder;
using Zq::Gantry::Server::Services::Wattleaf::DesktopApps;

// Reads the real registry, below a key of the test.
namespace {

constexpr wchar_t kName[] = L"DisplayName";
constexpr wchar_t kIcon[] = L"DisplayIcon";

class AddProgramsUnderTest : public testing::Test {
 protected:
  DesktopApps Read() const {
    DesktopApps apps;
    AddProgramsUnder(key_.Hive(), key_.Path(), apps);
    return apps;
  }

  const ScratchKey key_;
};

std::string Bytes(const std::wstring& text) {
  return std::string(reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
}

}  // namespace

TEST_F(AddProgramsUnderTest, KeepsTheIconTextUnchanged) {
  key_.SetText(L"Meadow", kName, L"Meadow Office");
  key_.SetText(L"Meadow", kIcon, L"\"C:\\Program Files\\Meadow\\meadow.exe\",0");
  EXPECT_EQ(Read(),
            (DesktopApps{{L"Meadow Office", L"\"C:\\Program Files\\Meadow\\meadow.exe\",0"}}));
}

TEST_F(AddProgramsUnderTest, DistinguishesNamesByCaseBlanksAndVersions) {
  key_.SetText(L"1", kName, L"Sorrel Sync");
  key_.SetText(L"2", kName, L"sorrel sync");
  key_.SetText(L"3", kName, L"Sorrel Sync ");
  key_.SetText(L"4", kName, L"Sorrel Sync 2.1");
  EXPECT_EQ(Read(), (DesktopApps{{L"Sorrel Sync", L""},
                                 {L"sorrel sync", L""},
                                 {L"Sorrel Sync ", L""},
                                 {L"Sorrel Sync 2.1", L""}}));
}

TEST_F(AddProgramsUnderTest, KeepsNamesOutsideAscii) {
  key_.SetText(L"Gr\u00FCn", kName, L"Gr\u00FCne Wiese \u8349\U0001F33F");
  EXPECT_EQ(Read(), (DesktopApps{{L"Gr\u00FCne Wiese \u8349\U0001F33F", L""}}));
}

TEST_F(AddProgramsUnderTest, SkipsKeysWithoutAName) {
  key_.SetText(L"1", kIcon, L"C:\\update.ico");
  key_.AddSubkey(L"2");
  key_.SetText(L"3", kName, L"Harbor Mail");
  EXPECT_EQ(Read(), (DesktopApps{{L"Harbor Mail", L""}}));
}

TEST_F(AddProgramsUnderTest, SkipsNamesAbove255Characters) {
  key_.SetText(L"1", kName, std::wstring(255, L'n'));
  key_.SetText(L"2", kName, std::wstring(256, L'm'));
  key_.SetText(L"3", kName, std::wstring(5000, L'l'));
  EXPECT_EQ(Read(), (DesktopApps{{std::wstring(255, L'n'), L""}}));
}

TEST_F(AddProgramsUnderTest, OmitsIconsAbove127Characters) {
  key_.SetText(L"1", kName, L"Fits");
  key_.SetText(L"1", kIcon, std::wstring(127, L'i'));
  key_.SetText(L"2", kName, L"Too long");
  key_.SetText(L"2", kIcon, std::wstring(128, L'i'));
  key_.SetText(L"3", kName, L"Far too long");
  key_.SetText(L"3", kIcon, std::wstring(5000, L'i'));
  EXPECT_EQ(Read(),
            (DesktopApps{
                {L"Fits", std::wstring(127, L'i')}, {L"Too long", L""}, {L"Far too long", L""}}));
}

TEST_F(AddProgramsUnderTest, AddsAnEmptyNameUnderAnEmptyKey) {
  key_.SetText(L"1", kName, L"");
  key_.SetText(L"1", kIcon, L"C:\\nameless.ico");
  EXPECT_EQ(Read(), (DesktopApps{{L"", L"C:\\nameless.ico"}}));
}

TEST_F(AddProgramsUnderTest, KeepsTheLastOfTwoEqualNamesEvenWithoutAnIcon) {
  key_.SetText(L"1", kName, L"Brook Browser");
  key_.SetText(L"1", kIcon, L"C:\\brook.ico");
  key_.SetText(L"2", kName, L"Brook Browser");
  EXPECT_EQ(Read(), (DesktopApps{{L"Brook Browser", L""}}));
}

TEST_F(AddProgramsUnderTest, ReplacesTheIconOfAnExistingName) {
  key_.SetText(L"1", kName, L"Brook Browser");
  key_.SetText(L"1", kIcon, L"C:\\new.ico");
  DesktopApps apps{{L"Brook Browser", L"C:\\old.ico"}, {L"Cobalt Photo", L"C:\\cobalt.ico"}};
  AddProgramsUnder(key_.Hive(), key_.Path(), apps);
  EXPECT_EQ(apps, (DesktopApps{{L"Brook Browser", L"C:\\new.ico"},
                               {L"Cobalt Photo", L"C:\\cobalt.ico"}}));
}

TEST_F(AddProgramsUnderTest, BoundsUnterminatedTextsByTheirBuffers) {
  key_.SetBytes(L"1", kName, REG_SZ, Bytes(L"No end"));
  key_.SetBytes(L"1", kIcon, REG_SZ, Bytes(std::wstring(128, L'i')));
  key_.SetBytes(L"2", kName, REG_SZ, Bytes(std::wstring(256, L'n')));
  EXPECT_EQ(Read(),
            (DesktopApps{{L"No end", std::wstring(128, L'i')}, {std::wstring(256, L'n'), L""}}));
}

TEST_F(AddProgramsUnderTest, EndsTextsAtTheirFirstZero) {
  key_.SetText(L"1", kName, std::wstring(L"Shown\0hidden", 12));
  key_.SetText(L"1", kIcon, std::wstring(L"\0hidden", 7));
  EXPECT_EQ(Read(), (DesktopApps{{L"Shown", L""}}));
}

TEST_F(AddProgramsUnderTest, ReadsTheBytesOfValuesOfOtherTypes) {
  key_.SetBytes(L"1", kName, REG_DWORD, std::string("A\0B\0", 4));
  key_.SetBytes(L"1", kIcon, REG_BINARY, std::string("x\0y", 3));
  key_.SetBytes(L"2", kName, REG_EXPAND_SZ, Bytes(std::wstring(L"%PATH%\0", 7)));
  key_.SetBytes(L"3", kName, REG_BINARY, "");
  EXPECT_EQ(Read(), (DesktopApps{{L"AB", L"xy"}, {L"%PATH%", L""}, {L"", L""}}));
}

TEST_F(AddProgramsUnderTest, DoesNotReadKeysBelowAProgramsKey) {
  key_.SetText(L"1\\Deeper", kName, L"Deeper");
  key_.SetText(L"1", kName, L"Upper");
  EXPECT_EQ(Read(), (DesktopApps{{L"Upper", L""}}));
}

TEST_F(AddProgramsUnderTest, AddsNothingFromAMissingRoot) {
  DesktopApps apps{{L"Cobalt Photo", L""}};
  AddProgramsUnder(HKEY_CURRENT_USER, L"Software\\WattleafTest\\Nowhere", apps);
  EXPECT_EQ(apps, (DesktopApps{{L"Cobalt Photo", L""}}));
}

TEST_F(AddProgramsUnderTest, ReadsFiveHundredKeys) {
  DesktopApps expected;
  for (int n = 0; n < 500; ++n) {
    const std::wstring name = L"Program " + std::to_wstring(n);
    key_.SetText(std::to_wstring(n), kName, name);
    expected[name] = L"";
  }
  EXPECT_EQ(Read(), expected);
}
