#include "security/access/manifest_exemption.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "security/access/exemption_white_lists.h"

namespace Zq::Gantry::Security {
namespace {

using Server::Win32::Win32Information;
using ProgramCheck = Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion;
using ProgramRows = std::vector<Win32MatchingDescriptor>;

constexpr auto kAtMost = MatchingDescriptor::Operation::LessThanOrEqual;

bool IsExemptProgram(const wchar_t* name, std::uint16_t major, std::uint16_t minor) {
  return ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(),
                      std::make_shared<Win32Information>(name, major, minor))
      .IsAnException();
}

TEST(Win32Exemption, AppliesUpToTheVersionOfEachRow) {
  const struct {
    std::uint16_t major;
    std::uint16_t minor;
    bool exempt;
  } rows[] = {
      {0, 0, true},  {7, 99, true},  {7, 65535, true}, {8, 0, true},
      {8, 8, true},  {8, 9, true},   {8, 10, false},   {8, 65535, false},
      {9, 0, false}, {10, 0, false}, {80, 0, false},   {65535, 65535, false},
  };
  for (const wchar_t* name : {L"latchwardenuwp", L"zqlatchwardennote", L"latchwardenqfr"}) {
    for (const auto& row : rows) {
      EXPECT_EQ(IsExemptProgram(name, row.major, row.minor), row.exempt)
          << row.major << '.' << row.minor;
    }
  }
}

TEST(Win32Exemption, ComparesVersionsAsNumbers) {
  EXPECT_FALSE(IsExemptProgram(L"latchwardenuwp", 8, 10));
}

TEST(Win32Exemption, IgnoresTheMinorVersionOfALowerMajor) {
  EXPECT_TRUE(IsExemptProgram(L"latchwardenuwp", 7, 99));
}

TEST(Win32Exemption, ComparesTheNameOfTheRowAndNotItsId) {
  const auto rows = std::make_shared<ProgramRows>();
  rows->emplace_back(Win32Information(L"program", 2, 0), kAtMost);
  rows->front().Information.Id = L"id";
  EXPECT_TRUE(
      ProgramCheck(rows, std::make_shared<Win32Information>(L"program", 2, 0)).IsAnException());
  EXPECT_FALSE(ProgramCheck(rows, std::make_shared<Win32Information>(L"id", 2, 0)).IsAnException());
}

TEST(Win32Exemption, ComparesTheWholeName) {
  EXPECT_TRUE(IsExemptProgram(L"latchwardenuwp", 1, 0));
  EXPECT_FALSE(IsExemptProgram(L"latchwardenuw", 1, 0));
  EXPECT_FALSE(IsExemptProgram(L"latchwardenuwp2", 1, 0));
  EXPECT_FALSE(IsExemptProgram(L"atchwardenuwp", 1, 0));
  EXPECT_FALSE(IsExemptProgram(L"", 0, 0));
}

TEST(Win32Exemption, ComparesPastANullCharacter) {
  const auto client = std::make_shared<Win32Information>(L"latchwardenuwp", 1, 0);
  client->Name += std::wstring(L"\0x", 2);
  EXPECT_FALSE(ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client)
                   .IsAnException());
}

TEST(Win32Exemption, FoldsTheNameAndLeavesItFolded) {
  const auto client = std::make_shared<Win32Information>(L"LatchWardenUWP", 8, 9);
  ProgramCheck check(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client);
  EXPECT_TRUE(check.IsAnException());
  EXPECT_EQ(client->Name, L"latchwardenuwp");
  EXPECT_EQ(client->Id, L"LatchWardenUWP");
}

TEST(Win32Exemption, FoldsNoTextButTheName) {
  const auto client = std::make_shared<Win32Information>(L"LatchWardenUWP", L"Some Detail", 8, 9);
  client->Id = L"Some Id";
  ProgramCheck check(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client);
  EXPECT_TRUE(check.IsAnException());
  EXPECT_EQ(client->Detail, L"Some Detail");
  EXPECT_EQ(client->Id, L"Some Id");
}

TEST(Win32Exemption, LeavesTheNameFoldedEvenWithAnEmptyList) {
  const auto client = std::make_shared<Win32Information>(L"SomeName", 1, 0);
  EXPECT_FALSE(ProgramCheck(std::make_shared<ProgramRows>(), client).IsAnException());
  EXPECT_EQ(client->Name, L"somename");
}

TEST(Win32Exemption, DoesNotFoldWithoutAList) {
  const auto client = std::make_shared<Win32Information>(L"SomeName", 1, 0);
  EXPECT_FALSE(ProgramCheck(nullptr, client).IsAnException());
  EXPECT_EQ(client->Name, L"SomeName");
}

TEST(Win32Exemption, FoldsOnlyAToZ) {
  // The characters next to A, Z, a and z; letters beyond ASCII; a null character in the middle.
  const std::wstring name(L"@AZ[`az{\x00C4\x00D6\x0130\x0410\x212A\xFF21\x0000Q", 16);
  const std::wstring folded(L"@az[`az{\x00C4\x00D6\x0130\x0410\x212A\xFF21\x0000q", 16);
  const auto client = std::make_shared<Win32Information>(name, 1, 0);
  EXPECT_FALSE(ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client)
                   .IsAnException());
  EXPECT_EQ(client->Name, folded);
}

TEST(Win32Exemption, FoldsTheSameInEveryLocale) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  // Names from different systems; setlocale ignores those that it does not know.
  for (const char* locale : {"C.UTF-8", "English_United States.1252", ""}) {
    std::setlocale(LC_CTYPE, locale);
    const auto client = std::make_shared<Win32Information>(L"\x00C4Z\x0410", 1, 0);
    EXPECT_FALSE(ProgramCheck(std::make_shared<ProgramRows>(), client).IsAnException());
    EXPECT_EQ(client->Name, L"\x00C4z\x0410") << locale;
  }
  std::setlocale(LC_CTYPE, before.c_str());
}

TEST(Win32Exemption, NeverMatchesARowWithCapitals) {
  const auto rows = std::make_shared<ProgramRows>();
  rows->emplace_back(Win32Information(L"Program", 8, 9), kAtMost);
  EXPECT_FALSE(
      ProgramCheck(rows, std::make_shared<Win32Information>(L"Program", 1, 0)).IsAnException());
}

TEST(Win32Exemption, IsFalseWithoutListOrClient) {
  const auto list = Win32WithNoZQManifestExemptionWhiteList::GetExemption();
  EXPECT_FALSE(ProgramCheck(list, nullptr).IsAnException());
  EXPECT_FALSE(ProgramCheck(nullptr, nullptr).IsAnException());
}

TEST(Win32Exemption, ContinuesAfterARowWithALowerVersion) {
  const auto rows = std::make_shared<ProgramRows>();
  rows->emplace_back(Win32Information(L"program", 1, 0), kAtMost);
  rows->emplace_back(Win32Information(L"program", 3, 0), kAtMost);
  EXPECT_TRUE(
      ProgramCheck(rows, std::make_shared<Win32Information>(L"program", 2, 5)).IsAnException());
}

TEST(Win32Exemption, IgnoresOperationBuildAndRevision) {
  const auto rows = std::make_shared<ProgramRows>();
  rows->emplace_back(Win32Information(L"program", 2, 0),
                     static_cast<enum MatchingDescriptor::Operation>(0));
  const auto client = std::make_shared<Win32Information>(L"program", 2, 0);
  client->Version.Build = 65535;
  client->Version.Revision = 65535;
  EXPECT_TRUE(ProgramCheck(rows, client).IsAnException());
}

TEST(Win32Exemption, IgnoresTheTypeOfTheClient) {
  const auto client = std::make_shared<Win32Information>(L"LatchWardenUWP", 8, 9);
  client->Type = Server::ClientType::Uwp;
  EXPECT_TRUE(ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client)
                  .IsAnException());
  EXPECT_EQ(client->Name, L"latchwardenuwp");
}

TEST(Win32Exemption, IgnoresTheDetail) {
  const auto client = std::make_shared<Win32Information>(L"latchwardenqfr", L"detail", 8, 9);
  EXPECT_TRUE(ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client)
                  .IsAnException());
}

TEST(Win32Exemption, CopiesShareListAndClient) {
  const auto rows = std::make_shared<ProgramRows>();
  const auto client = std::make_shared<Win32Information>(L"PROGRAM", 2, 0);
  ProgramCheck check(rows, client);
  ProgramCheck copy(check);
  ProgramCheck assigned(nullptr, nullptr);
  assigned = check;
  rows->emplace_back(Win32Information(L"program", 2, 0), kAtMost);
  EXPECT_TRUE(copy.IsAnException());
  EXPECT_TRUE(assigned.IsAnException());
  EXPECT_EQ(client->Name, L"program");
}

}  // namespace
}  // namespace Zq::Gantry::Security
