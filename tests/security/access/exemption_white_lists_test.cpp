#include "security/access/exemption_white_lists.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace Zq::Gantry::Security {
namespace {

using Server::Uwp::UwpInformation;
using Server::Win32::Win32Information;
using StoreList = UwpWithNoZQManifestExemptionWhiteList;
using ProgramList = Win32WithNoZQManifestExemptionWhiteList;

#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif

constexpr auto kLessThanOrEqual = MatchingDescriptor::Operation::LessThanOrEqual;

TEST(MatchingDescriptor, HasOne32BitFieldThatDefaultsToOne) {
  EXPECT_EQ(sizeof(MatchingDescriptor), 4U);
  EXPECT_EQ(offsetof(MatchingDescriptor, Operation), 0U);
  EXPECT_EQ(static_cast<std::uint32_t>(MatchingDescriptor().Operation), 1U);
  EXPECT_EQ(static_cast<std::uint32_t>(kLessThanOrEqual), 1U);
}

TEST(MatchingDescriptor, PlacesTheClientAfterTheOperation) {
  EXPECT_EQ(offsetof(UwpMatchingDescriptor, Operation), 0U);
  EXPECT_EQ(offsetof(UwpMatchingDescriptor, Information), 8U);
  EXPECT_EQ(sizeof(UwpMatchingDescriptor), 8 + sizeof(UwpInformation));
  EXPECT_EQ(offsetof(Win32MatchingDescriptor, Information), 8U);
  EXPECT_EQ(sizeof(Win32MatchingDescriptor), 8 + sizeof(Win32Information));
  EXPECT_FALSE(std::is_polymorphic_v<UwpMatchingDescriptor>);
  EXPECT_FALSE(std::is_polymorphic_v<Win32MatchingDescriptor>);
}

TEST(MatchingDescriptor, CopiesOperationAndClient) {
  const auto other = static_cast<enum MatchingDescriptor::Operation>(7);
  const UwpMatchingDescriptor store(UwpInformation(L"n", L"f", 1, 2), other);
  const Win32MatchingDescriptor program(Win32Information(L"n", 1, 2), other);
  const UwpMatchingDescriptor storeCopy(store);
  const Win32MatchingDescriptor programCopy(program);
  EXPECT_EQ(storeCopy.Operation, other);
  EXPECT_EQ(storeCopy.Information.FamilyName, L"f");
  EXPECT_EQ(programCopy.Operation, other);
  EXPECT_EQ(programCopy.Information.Name, L"n");

  UwpMatchingDescriptor storeAssigned(UwpInformation(), kLessThanOrEqual);
  storeAssigned = store;
  EXPECT_EQ(storeAssigned.Operation, other);
  EXPECT_EQ(storeAssigned.Information.Version.Minor, 2);
  Win32MatchingDescriptor programAssigned(Win32Information(), kLessThanOrEqual);
  programAssigned = program;
  EXPECT_EQ(programAssigned.Operation, other);
  EXPECT_EQ(programAssigned.Information.Version.Minor, 2);
  MatchingDescriptor plain;
  plain = store;
  EXPECT_EQ(plain.Operation, other);
}

TEST(ExemptionWhiteLists, HaveNoFields) {
  EXPECT_TRUE(std::is_empty_v<StoreList>);
  EXPECT_TRUE(std::is_empty_v<ProgramList>);
}

TEST(ExemptionWhiteLists, HoldOneStoreApplication) {
  const auto rows = StoreList::GetExemption();
  ASSERT_EQ(rows->size(), 1U);
  const UwpMatchingDescriptor& row = rows->front();
  EXPECT_EQ(row.Information.Type, Server::ClientType::Uwp);
  EXPECT_EQ(row.Information.Name, L"C7E40B19.ZQLumenGuard");
  EXPECT_EQ(row.Information.FamilyName, L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9pa");
  EXPECT_EQ(row.Information.Version.Major, 2);
  EXPECT_EQ(row.Information.Version.Minor, 0);
  EXPECT_EQ(row.Operation, kLessThanOrEqual);
}

TEST(ExemptionWhiteLists, HoldThreeProgramsInOrder) {
  const auto rows = ProgramList::GetExemption();
  const std::vector<std::wstring> names = {L"latchwardenuwp", L"zqlatchwardennote",
                                           L"latchwardenqfr"};
  ASSERT_EQ(rows->size(), names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    const Win32MatchingDescriptor& row = rows->at(i);
    EXPECT_EQ(row.Information.Type, Server::ClientType::Win32);
    EXPECT_EQ(row.Information.Name, names[i]);
    EXPECT_EQ(row.Information.Detail, L"");
    EXPECT_EQ(row.Information.Version.Major, 8);
    EXPECT_EQ(row.Information.Version.Minor, 9);
    EXPECT_EQ(row.Operation, kLessThanOrEqual);
  }
}

TEST(ExemptionWhiteLists, AreCompleteAfterRowsOfAnotherCopyWereErased) {
  const auto first = ProgramList::GetExemption();
  const auto second = ProgramList::GetExemption();
  first->erase(first->begin());
  EXPECT_EQ(first->size(), 2U);
  EXPECT_EQ(second->size(), 3U);
  EXPECT_EQ(ProgramList::GetExemption()->size(), 3U);
}

TEST(ExemptionWhiteLists, ReturnCopiesThatShareNoRows) {
  const auto first = StoreList::GetExemption();
  const auto second = StoreList::GetExemption();
  ASSERT_NE(first, second);
  first->front().Information.FamilyName = L"mine";
  first->front().Information.Version.Major = 99;
  first->push_back(first->front());
  for (const auto& rows : {second, StoreList::GetExemption()}) {
    ASSERT_EQ(rows->size(), 1U);
    EXPECT_EQ(rows->front().Information.FamilyName, L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9pa");
    EXPECT_EQ(rows->front().Information.Version.Major, 2);
  }
}

TEST(ExemptionWhiteLists, ReturnCopiesWithoutSpareCapacity) {
  EXPECT_EQ(StoreList::GetExemption()->capacity(), 1U);
  EXPECT_EQ(ProgramList::GetExemption()->capacity(), 3U);
}

}  // namespace
}  // namespace Zq::Gantry::Security
