#include "security/access/manifest_exemption.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "security/access/exemption_white_lists.h"
#include "security/access/row_walk.h"

namespace Zq::Gantry::Security {
namespace {

using Server::Uwp::UwpInformation;
using Server::Win32::Win32Information;
using StoreCheck = UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion;
using ProgramCheck = Win32WithNoZqManifestCheckBasedOnMajorAndMinorVersion;
using StoreRows = std::vector<UwpMatchingDescriptor>;
using ProgramRows = std::vector<Win32MatchingDescriptor>;

constexpr wchar_t kFamily[] = L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9pa";
constexpr auto kUpTo = MatchingDescriptor::Operation::LessThanOrEqual;

std::shared_ptr<UwpInformation> StoreClient(const wchar_t* family, std::uint16_t major,
                                            std::uint16_t minor) {
  return std::make_shared<UwpInformation>(L"C7E40B19.ZQLumenGuard", family, major, minor);
}

bool IsExemptStoreClient(const wchar_t* family, std::uint16_t major, std::uint16_t minor) {
  return StoreCheck(UwpWithNoZQManifestExemptionWhiteList::GetExemption(),
                    StoreClient(family, major, minor))
      .IsAnException();
}

bool IsExemptProgram(const wchar_t* name, std::uint16_t major, std::uint16_t minor) {
  return ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(),
                      std::make_shared<Win32Information>(name, major, minor))
      .IsAnException();
}

struct VersionRow {
  std::uint16_t major;
  std::uint16_t minor;
  bool exempt;
};

TEST(UwpExemption, HoldsUpToTheLimitOfTheRow) {
  const VersionRow rows[] = {
      {0, 0, true},      {0, 65535, true},      {1, 9, true},   {1, 65535, true},
      {2, 0, true},      {2, 1, false},         {2, 10, false}, {3, 0, false},
      {65535, 0, false}, {65535, 65535, false}, {10, 0, false}, {20, 0, false},
  };
  for (const VersionRow& row : rows) {
    EXPECT_EQ(IsExemptStoreClient(kFamily, row.major, row.minor), row.exempt)
        << row.major << '.' << row.minor;
  }
}

TEST(Win32Exemption, HoldsUpToTheLimitOfEachRow) {
  const VersionRow rows[] = {
      {0, 0, true},  {7, 99, true},  {7, 65535, true}, {8, 0, true},
      {8, 8, true},  {8, 9, true},   {8, 10, false},   {8, 65535, false},
      {9, 0, false}, {10, 0, false}, {80, 0, false},   {65535, 65535, false},
  };
  for (const wchar_t* name : {L"latchwardenuwp", L"zqlatchwardennote", L"latchwardenqfr"}) {
    for (const VersionRow& row : rows) {
      EXPECT_EQ(IsExemptProgram(name, row.major, row.minor), row.exempt)
          << row.major << '.' << row.minor;
    }
  }
}

TEST(Win32Exemption, EightTenIsAboveEightNineAsNumbers) {
  EXPECT_FALSE(IsExemptProgram(L"latchwardenuwp", 8, 10));
}

TEST(Win32Exemption, ALowerMajorNeedsNoLookAtMinor) {
  EXPECT_TRUE(IsExemptProgram(L"latchwardenuwp", 7, 99));
}

TEST(UwpExemption, ComparesTheFamilyNameExactly) {
  EXPECT_TRUE(IsExemptStoreClient(kFamily, 2, 0));
  EXPECT_FALSE(IsExemptStoreClient(L"c7e40b19.zqlumenguard_q7m3xk2tdw9pa", 2, 0));
  EXPECT_FALSE(IsExemptStoreClient(L"C7E40B19.ZQLUMENGUARD_q7m3xk2tdw9pa", 2, 0));
  EXPECT_FALSE(IsExemptStoreClient(L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9p", 2, 0));
  EXPECT_FALSE(IsExemptStoreClient(L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9pab", 2, 0));
  EXPECT_FALSE(IsExemptStoreClient(L"C7E40B19.ZQLumenGuard", 2, 0));
  EXPECT_FALSE(IsExemptStoreClient(L"", 0, 0));
}

TEST(UwpExemption, ComparesPastAZeroCharacter) {
  auto client = StoreClient(kFamily, 1, 0);
  client->FamilyName += std::wstring(L"\0x", 2);
  EXPECT_FALSE(
      StoreCheck(UwpWithNoZQManifestExemptionWhiteList::GetExemption(), client).IsAnException());
}

TEST(UwpExemption, ComparesTheFamilyNameOfTheRowAndNotItsId) {
  const auto rows = std::make_shared<StoreRows>();
  rows->emplace_back(UwpInformation(L"n", L"family", 2, 0), kUpTo);
  rows->front().Information.Id = L"id";
  EXPECT_TRUE(StoreCheck(rows, StoreClient(L"family", 2, 0)).IsAnException());
  EXPECT_FALSE(StoreCheck(rows, StoreClient(L"id", 2, 0)).IsAnException());
}

TEST(Win32Exemption, ComparesTheNameOfTheRowAndNotItsId) {
  const auto rows = std::make_shared<ProgramRows>();
  rows->emplace_back(Win32Information(L"program", 2, 0), kUpTo);
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

TEST(Win32Exemption, ComparesPastAZeroCharacter) {
  const auto client = std::make_shared<Win32Information>(L"latchwardenuwp", 1, 0);
  client->Name += std::wstring(L"\0x", 2);
  EXPECT_FALSE(ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client)
                   .IsAnException());
}

TEST(UwpExemption, DoesNotTouchItsClient) {
  const auto client = StoreClient(L"Some.Family_ABC", 1, 0);
  EXPECT_FALSE(
      StoreCheck(UwpWithNoZQManifestExemptionWhiteList::GetExemption(), client).IsAnException());
  EXPECT_EQ(client->FamilyName, L"Some.Family_ABC");
  EXPECT_EQ(client->Name, L"C7E40B19.ZQLumenGuard");
}

TEST(Win32Exemption, FoldsTheNameAndLeavesItFolded) {
  const auto client = std::make_shared<Win32Information>(L"LatchWardenUWP", 8, 9);
  ProgramCheck check(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client);
  EXPECT_TRUE(check.IsAnException());
  EXPECT_EQ(client->Name, L"latchwardenuwp");
  EXPECT_EQ(client->Id, L"LatchWardenUWP");
}

TEST(Win32Exemption, FoldsTheNameOnlyAndNoOtherText) {
  const auto client = std::make_shared<Win32Information>(L"LatchWardenUWP", L"Some Detail", 8, 9);
  client->Id = L"Some Id";
  ProgramCheck check(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client);
  EXPECT_TRUE(check.IsAnException());
  EXPECT_EQ(client->Detail, L"Some Detail");
  EXPECT_EQ(client->Id, L"Some Id");
}

TEST(Win32Exemption, FoldsTheNameForGoodEvenWithAnEmptyList) {
  const auto client = std::make_shared<Win32Information>(L"SomeName", 1, 0);
  EXPECT_FALSE(ProgramCheck(std::make_shared<ProgramRows>(), client).IsAnException());
  EXPECT_EQ(client->Name, L"somename");
}

TEST(Win32Exemption, DoesNotFoldWithoutAList) {
  const auto client = std::make_shared<Win32Information>(L"SomeName", 1, 0);
  EXPECT_FALSE(ProgramCheck(nullptr, client).IsAnException());
  EXPECT_EQ(client->Name, L"SomeName");
}

TEST(Win32Exemption, FoldsAToZAndNothingElse) {
  // Neighbours of the letters; Latin-1, Cyrillic, Kelvin sign, dotted I; a zero in the middle.
  const std::wstring name(L"@AZ[`az{\x00C4\x00D6\x0130\x0410\x212A\xFF21\x0000Q", 16);
  const std::wstring folded(L"@az[`az{\x00C4\x00D6\x0130\x0410\x212A\xFF21\x0000q", 16);
  const auto client = std::make_shared<Win32Information>(name, 1, 0);
  EXPECT_FALSE(ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client)
                   .IsAnException());
  EXPECT_EQ(client->Name, folded);
}

TEST(Win32Exemption, FoldsTheSameWhateverTheLocaleOfTheProcess) {
  const std::string before = std::setlocale(LC_CTYPE, nullptr);
  // Names of different systems; those that are unknown change nothing.
  for (const char* locale : {"C.UTF-8", "English_United States.1252", ""}) {
    std::setlocale(LC_CTYPE, locale);
    const auto client = std::make_shared<Win32Information>(L"\x00C4Z\x0410", 1, 0);
    EXPECT_FALSE(ProgramCheck(std::make_shared<ProgramRows>(), client).IsAnException());
    EXPECT_EQ(client->Name, L"\x00C4z\x0410") << locale;
  }
  std::setlocale(LC_CTYPE, before.c_str());
}

TEST(Win32Exemption, ARowWithCapitalsMatchesNobody) {
  const auto rows = std::make_shared<ProgramRows>();
  rows->emplace_back(Win32Information(L"Program", 8, 9), kUpTo);
  EXPECT_FALSE(
      ProgramCheck(rows, std::make_shared<Win32Information>(L"Program", 1, 0)).IsAnException());
}

TEST(UwpExemption, IsFalseWithoutListOrClient) {
  EXPECT_FALSE(StoreCheck(nullptr, StoreClient(kFamily, 1, 0)).IsAnException());
  EXPECT_FALSE(
      StoreCheck(UwpWithNoZQManifestExemptionWhiteList::GetExemption(), nullptr).IsAnException());
  EXPECT_FALSE(StoreCheck(nullptr, nullptr).IsAnException());
  EXPECT_FALSE(
      StoreCheck(std::make_shared<StoreRows>(), StoreClient(kFamily, 1, 0)).IsAnException());
}

TEST(Win32Exemption, IsFalseWithoutListOrClient) {
  const auto list = Win32WithNoZQManifestExemptionWhiteList::GetExemption();
  EXPECT_FALSE(ProgramCheck(list, nullptr).IsAnException());
  EXPECT_FALSE(ProgramCheck(nullptr, nullptr).IsAnException());
}

TEST(UwpExemption, ARowThatIsTooLowDoesNotEndTheWalk) {
  const auto rows = std::make_shared<StoreRows>();
  rows->emplace_back(UwpInformation(L"n", L"family", 1, 0), kUpTo);
  rows->emplace_back(UwpInformation(L"n", L"other", 9, 9), kUpTo);
  rows->emplace_back(UwpInformation(L"n", L"family", 3, 0), kUpTo);
  EXPECT_TRUE(StoreCheck(rows, StoreClient(L"family", 2, 5)).IsAnException());
  EXPECT_FALSE(StoreCheck(rows, StoreClient(L"family", 3, 1)).IsAnException());
}

TEST(Win32Exemption, ARowThatIsTooLowDoesNotEndTheWalk) {
  const auto rows = std::make_shared<ProgramRows>();
  rows->emplace_back(Win32Information(L"program", 1, 0), kUpTo);
  rows->emplace_back(Win32Information(L"program", 3, 0), kUpTo);
  EXPECT_TRUE(
      ProgramCheck(rows, std::make_shared<Win32Information>(L"program", 2, 5)).IsAnException());
}

TEST(UwpExemption, ReadsNeitherOperationNorBuildNorRevision) {
  const auto rows = std::make_shared<StoreRows>();
  rows->emplace_back(UwpInformation(L"n", L"family", 2, 0),
                     static_cast<enum MatchingDescriptor::Operation>(0));
  const auto client = StoreClient(L"family", 2, 0);
  client->Version.Build = 65535;
  client->Version.Revision = 65535;
  EXPECT_TRUE(StoreCheck(rows, client).IsAnException());
}

TEST(Win32Exemption, ReadsNeitherOperationNorBuildNorRevision) {
  const auto rows = std::make_shared<ProgramRows>();
  rows->emplace_back(Win32Information(L"program", 2, 0),
                     static_cast<enum MatchingDescriptor::Operation>(0));
  const auto client = std::make_shared<Win32Information>(L"program", 2, 0);
  client->Version.Build = 65535;
  client->Version.Revision = 65535;
  EXPECT_TRUE(ProgramCheck(rows, client).IsAnException());
}

TEST(UwpExemption, ReadsNoType) {
  const auto client = StoreClient(kFamily, 2, 0);
  client->Type = Server::ClientType::Win32;
  EXPECT_TRUE(
      StoreCheck(UwpWithNoZQManifestExemptionWhiteList::GetExemption(), client).IsAnException());
}

TEST(Win32Exemption, ReadsNoType) {
  const auto client = std::make_shared<Win32Information>(L"LatchWardenUWP", 8, 9);
  client->Type = Server::ClientType::Uwp;
  EXPECT_TRUE(ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client)
                  .IsAnException());
  EXPECT_EQ(client->Name, L"latchwardenuwp");
}

TEST(Win32Exemption, ReadsNoDetail) {
  const auto client = std::make_shared<Win32Information>(L"latchwardenqfr", L"detail", 8, 9);
  EXPECT_TRUE(ProgramCheck(Win32WithNoZQManifestExemptionWhiteList::GetExemption(), client)
                  .IsAnException());
}

TEST(UwpExemption, CopiesShareListAndClient) {
  const auto rows = std::make_shared<StoreRows>();
  const auto client = StoreClient(L"family", 2, 0);
  StoreCheck check(rows, client);
  StoreCheck copy(check);
  StoreCheck assigned(nullptr, nullptr);
  assigned = check;
  rows->emplace_back(UwpInformation(L"n", L"family", 2, 0), kUpTo);
  EXPECT_TRUE(copy.IsAnException());
  EXPECT_TRUE(assigned.IsAnException());
  client->Version.Minor = 1;
  EXPECT_FALSE(copy.IsAnException());
  EXPECT_FALSE(assigned.IsAnException());
}

TEST(Win32Exemption, CopiesShareListAndClient) {
  const auto rows = std::make_shared<ProgramRows>();
  const auto client = std::make_shared<Win32Information>(L"PROGRAM", 2, 0);
  ProgramCheck check(rows, client);
  ProgramCheck copy(check);
  ProgramCheck assigned(nullptr, nullptr);
  assigned = check;
  rows->emplace_back(Win32Information(L"program", 2, 0), kUpTo);
  EXPECT_TRUE(copy.IsAnException());
  EXPECT_TRUE(assigned.IsAnException());
  EXPECT_EQ(client->Name, L"program");
}

TEST(RowWalk, AListThatShrinksRaisesOutOfRangeWithItsText) {
  std::vector<int> rows = {1, 2, 3};
  const auto shrink = [&rows](int) {
    rows.pop_back();
    return false;
  };
  try {
    static_cast<void>(AnyRowFits(rows, shrink));
    FAIL() << "nothing was raised";
  } catch (const std::out_of_range& failure) {
    EXPECT_STREQ(failure.what(), "invalid vector subscript");
  }
}

TEST(RowWalk, GoesToTheLastOfManyRows) {
  const std::vector<int> rows = [] {
    std::vector<int> numbers(1000, 0);
    numbers.back() = 1;
    return numbers;
  }();
  EXPECT_TRUE(AnyRowFits(rows, [](int row) { return row == 1; }));
  EXPECT_FALSE(AnyRowFits(rows, [](int row) { return row == 2; }));
}

TEST(RowWalk, TheRowJustBehindTheEndIsOutOfRangeToo) {
  std::vector<int> rows = {1, 2};
  const auto shrink = [&rows](int) {
    rows.pop_back();
    return false;
  };
  EXPECT_THROW(static_cast<void>(AnyRowFits(rows, shrink)), std::out_of_range);
  EXPECT_EQ(rows.size(), 1U) << "asked once";
}

TEST(RowWalk, JudgesACopyOfTheRow) {
  std::vector<int> rows = {1};
  EXPECT_TRUE(AnyRowFits(rows, [&rows](const int& row) {
    rows.front() = 9;
    return row == 1;
  }));
}

TEST(RowWalk, EndsAtTheFirstRowThatFits) {
  int asked = 0;
  EXPECT_TRUE(AnyRowFits(std::vector<int>{1, 2, 3}, [&asked](int row) {
    ++asked;
    return row == 2;
  }));
  EXPECT_EQ(asked, 2);
}

}  // namespace
}  // namespace Zq::Gantry::Security
