#include "security/access/manifest_exemption.h"

#include <gtest/gtest.h>

#include <string>

#include "security/access/exemption_white_lists.h"

namespace Zq::Gantry::Security {
namespace {

using Server::Uwp::UwpInformation;
using StoreCheck = UwpWithNoZqManifestCheckBasedOnMajorAndMinorVersion;
using StoreRows = std::vector<UwpMatchingDescriptor>;

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

TEST(UwpExemption, AppliesUpToTheVersionOfTheRow) {
  const struct {
    std::uint16_t major;
    std::uint16_t minor;
    bool exempt;
  } rows[] = {
      {0, 0, true},      {0, 65535, true},      {1, 9, true},   {1, 65535, true},
      {2, 0, true},      {2, 1, false},         {2, 10, false}, {3, 0, false},
      {65535, 0, false}, {65535, 65535, false}, {10, 0, false}, {20, 0, false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(IsExemptStoreClient(kFamily, row.major, row.minor), row.exempt)
        << row.major << '.' << row.minor;
  }
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

TEST(UwpExemption, ComparesPastANullCharacter) {
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

TEST(UwpExemption, DoesNotChangeItsClient) {
  const auto client = StoreClient(L"Some.Family_ABC", 1, 0);
  EXPECT_FALSE(
      StoreCheck(UwpWithNoZQManifestExemptionWhiteList::GetExemption(), client).IsAnException());
  EXPECT_EQ(client->FamilyName, L"Some.Family_ABC");
  EXPECT_EQ(client->Name, L"C7E40B19.ZQLumenGuard");
}

TEST(UwpExemption, IsFalseWithoutListOrClient) {
  EXPECT_FALSE(StoreCheck(nullptr, StoreClient(kFamily, 1, 0)).IsAnException());
  EXPECT_FALSE(
      StoreCheck(UwpWithNoZQManifestExemptionWhiteList::GetExemption(), nullptr).IsAnException());
  EXPECT_FALSE(StoreCheck(nullptr, nullptr).IsAnException());
  EXPECT_FALSE(
      StoreCheck(std::make_shared<StoreRows>(), StoreClient(kFamily, 1, 0)).IsAnException());
}

TEST(UwpExemption, ContinuesAfterARowWithALowerVersion) {
  const auto rows = std::make_shared<StoreRows>();
  rows->emplace_back(UwpInformation(L"n", L"family", 1, 0), kUpTo);
  rows->emplace_back(UwpInformation(L"n", L"other", 9, 9), kUpTo);
  rows->emplace_back(UwpInformation(L"n", L"family", 3, 0), kUpTo);
  EXPECT_TRUE(StoreCheck(rows, StoreClient(L"family", 2, 5)).IsAnException());
  EXPECT_FALSE(StoreCheck(rows, StoreClient(L"family", 3, 1)).IsAnException());
}

TEST(UwpExemption, IgnoresOperationBuildAndRevision) {
  const auto rows = std::make_shared<StoreRows>();
  rows->emplace_back(UwpInformation(L"n", L"family", 2, 0),
                     static_cast<enum MatchingDescriptor::Operation>(0));
  const auto client = StoreClient(L"family", 2, 0);
  client->Version.Build = 65535;
  client->Version.Revision = 65535;
  EXPECT_TRUE(StoreCheck(rows, client).IsAnException());
}

TEST(UwpExemption, IgnoresTheTypeOfTheClient) {
  const auto client = StoreClient(kFamily, 2, 0);
  client->Type = Server::ClientType::Win32;
  EXPECT_TRUE(
      StoreCheck(UwpWithNoZQManifestExemptionWhiteList::GetExemption(), client).IsAnException());
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

}  // namespace
}  // namespace Zq::Gantry::Security
