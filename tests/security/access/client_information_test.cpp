#include "security/access/client_information.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

namespace Zq::Gantry::Server {
namespace {

using Uwp::UwpInformation;
using Win32::Win32Information;

#if defined(__GNUC__)
// The offsets of the fields are a contract, although the language leaves them to the compiler.
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif

UwpInformation FullStoreClient() {
  UwpInformation client(L"Name", L"Family", 1, 2);
  client.Version.Build = 3;
  client.Version.Revision = 4;
  client.ExtraText1 = L"one";
  client.ExtraText2 = L"two";
  client.ExtraNumber = 0xFFFFFFFF;
  client.ExtraText3 = L"three";
  return client;
}

void ExpectFullStoreClient(const UwpInformation& client) {
  EXPECT_EQ(client.Type, ClientType::Uwp);
  EXPECT_EQ(client.Id, L"Family");
  EXPECT_EQ(client.Name, L"Name");
  EXPECT_EQ(client.FamilyName, L"Family");
  EXPECT_EQ(client.Version.Major, 1);
  EXPECT_EQ(client.Version.Minor, 2);
  EXPECT_EQ(client.Version.Build, 3);
  EXPECT_EQ(client.Version.Revision, 4);
  EXPECT_EQ(client.ExtraText1, L"one");
  EXPECT_EQ(client.ExtraText2, L"two");
  EXPECT_EQ(client.ExtraNumber, 0xFFFFFFFF);
  EXPECT_EQ(client.ExtraText3, L"three");
}

TEST(ClientType, Has32BitsAndTheNumbersZeroAndOne) {
  EXPECT_EQ(static_cast<std::uint32_t>(ClientType::Uwp), 0U);
  EXPECT_EQ(static_cast<std::uint32_t>(ClientType::Win32), 1U);
  EXPECT_EQ(sizeof(ClientType), 4U);
}

TEST(ClientVersion, HasFourNumbersOf16BitsInOrder) {
  EXPECT_EQ(offsetof(ClientVersion, Major), 0U);
  EXPECT_EQ(offsetof(ClientVersion, Minor), 2U);
  EXPECT_EQ(offsetof(ClientVersion, Build), 4U);
  EXPECT_EQ(offsetof(ClientVersion, Revision), 6U);
  EXPECT_EQ(sizeof(ClientVersion), 8U);
}

TEST(ClientVersion, StoresMajorAndMinorAndLeavesTheOthersZero) {
  const ClientVersion version(65535, 10);
  EXPECT_EQ(version.Major, 65535);
  EXPECT_EQ(version.Minor, 10);
  EXPECT_EQ(version.Build, 0);
  EXPECT_EQ(version.Revision, 0);
}

TEST(IClientInformation, HasItsFieldsInOrder) {
  EXPECT_EQ(offsetof(IClientInformation, Type), 0U);
  EXPECT_EQ(offsetof(IClientInformation, Id), 8U);
  EXPECT_EQ(sizeof(IClientInformation), 8 + sizeof(std::wstring));
}

TEST(UwpInformation, HasItsFieldsInOrderAfterTheBase) {
  constexpr std::size_t kText = sizeof(std::wstring);
  constexpr std::size_t kBase = sizeof(IClientInformation);
  EXPECT_EQ(offsetof(UwpInformation, Name), kBase);
  EXPECT_EQ(offsetof(UwpInformation, FamilyName), kBase + kText);
  EXPECT_EQ(offsetof(UwpInformation, Version), kBase + 2 * kText);
  EXPECT_EQ(offsetof(UwpInformation, ExtraText1), kBase + 2 * kText + 8);
  EXPECT_EQ(offsetof(UwpInformation, ExtraText2), kBase + 3 * kText + 8);
  EXPECT_EQ(offsetof(UwpInformation, ExtraNumber), kBase + 4 * kText + 8);
  EXPECT_EQ(offsetof(UwpInformation, ExtraText3), kBase + 4 * kText + 16);
  EXPECT_EQ(sizeof(UwpInformation), kBase + 5 * kText + 16);
}

TEST(Win32Information, HasItsFieldsInOrderAfterTheBase) {
  constexpr std::size_t kText = sizeof(std::wstring);
  constexpr std::size_t kBase = sizeof(IClientInformation);
  EXPECT_EQ(offsetof(Win32Information, Name), kBase);
  EXPECT_EQ(offsetof(Win32Information, Detail), kBase + kText);
  EXPECT_EQ(offsetof(Win32Information, Version), kBase + 2 * kText);
  EXPECT_EQ(sizeof(Win32Information), kBase + 2 * kText + 8);
}

TEST(IClientInformation, HasNoVirtualOperationsInDerivedClassesEither) {
  EXPECT_FALSE(std::is_polymorphic_v<IClientInformation>);
  EXPECT_FALSE(std::is_polymorphic_v<UwpInformation>);
  EXPECT_FALSE(std::is_polymorphic_v<Win32Information>);
}

TEST(IClientInformation, IsAStoreClientByDefault) {
  const IClientInformation client;
  EXPECT_EQ(static_cast<std::uint32_t>(client.Type), 0U);
  EXPECT_EQ(client.Type, ClientType::Uwp);
  EXPECT_EQ(client.Id, L"");
}

TEST(IClientInformation, StoresTypeAndId) {
  EXPECT_EQ(IClientInformation(ClientType::Win32).Type, ClientType::Win32);
  EXPECT_EQ(IClientInformation(ClientType::Win32).Id, L"");
  const IClientInformation client(ClientType::Win32, L"program");
  EXPECT_EQ(client.Type, ClientType::Win32);
  EXPECT_EQ(client.Id, L"program");
}

TEST(UwpInformation, IsEmptyByDefault) {
  const UwpInformation client;
  EXPECT_EQ(client.Type, ClientType::Uwp);
  EXPECT_EQ(client.Id + client.Name + client.FamilyName, L"");
  EXPECT_EQ(client.ExtraText1 + client.ExtraText2 + client.ExtraText3, L"");
  EXPECT_EQ(client.Version.Major + client.Version.Minor, 0);
  EXPECT_EQ(client.Version.Build + client.Version.Revision, 0);
  EXPECT_EQ(client.ExtraNumber, 0U);
}

TEST(Win32Information, IsOfTypeOneAndEmptyByDefault) {
  const Win32Information client;
  EXPECT_EQ(static_cast<std::uint32_t>(client.Type), 1U);
  EXPECT_EQ(client.Id + client.Name + client.Detail, L"");
  EXPECT_EQ(client.Version.Major + client.Version.Minor, 0);
  EXPECT_EQ(client.Version.Build + client.Version.Revision, 0);
}

TEST(UwpInformation, UsesTheFamilyNameAsId) {
  const UwpInformation client(L"Name", L"Family", 2, 65535);
  EXPECT_EQ(client.Type, ClientType::Uwp);
  EXPECT_EQ(client.Id, L"Family");
  EXPECT_EQ(client.FamilyName, L"Family");
  EXPECT_EQ(client.Name, L"Name");
  EXPECT_EQ(client.Version.Major, 2);
  EXPECT_EQ(client.Version.Minor, 65535);
  EXPECT_EQ(client.Version.Build, 0);
  EXPECT_EQ(client.Version.Revision, 0);
  EXPECT_EQ(client.ExtraText1 + client.ExtraText2 + client.ExtraText3, L"");
  EXPECT_EQ(client.ExtraNumber, 0U);
}

TEST(Win32Information, UsesTheNameAsId) {
  const Win32Information client(L"Name", L"Detail", 8, 9);
  EXPECT_EQ(client.Type, ClientType::Win32);
  EXPECT_EQ(client.Id, L"Name");
  EXPECT_EQ(client.Name, L"Name");
  EXPECT_EQ(client.Detail, L"Detail");
  EXPECT_EQ(client.Version.Major, 8);
  EXPECT_EQ(client.Version.Minor, 9);
}

TEST(Win32Information, HasAnEmptyDetailWhenNoneIsGiven) {
  const Win32Information client(L"Name", 8, 9);
  EXPECT_EQ(client.Type, ClientType::Win32);
  EXPECT_EQ(client.Id, L"Name");
  EXPECT_EQ(client.Name, L"Name");
  EXPECT_EQ(client.Detail, L"");
  EXPECT_EQ(client.Version.Major, 8);
  EXPECT_EQ(client.Version.Minor, 9);
}

TEST(UwpInformation, IsUnchangedBySelfAssignment) {
  UwpInformation client = FullStoreClient();
  const UwpInformation& same = client;
  client = same;
  ExpectFullStoreClient(client);
}

TEST(Win32Information, IsUnchangedBySelfAssignment) {
  Win32Information client(L"Name", L"Detail", 8, 9);
  const Win32Information& same = client;
  client = same;
  EXPECT_EQ(client.Id, L"Name");
  EXPECT_EQ(client.Name, L"Name");
  EXPECT_EQ(client.Detail, L"Detail");
  EXPECT_EQ(client.Version.Minor, 9);
}

TEST(UwpInformation, CopiesExtraFieldsAndAllFourVersionNumbers) {
  const UwpInformation client = FullStoreClient();
  const UwpInformation copy(client);
  ExpectFullStoreClient(copy);
  UwpInformation assigned(L"other", L"other", 9, 9);
  assigned = client;
  ExpectFullStoreClient(assigned);
}

TEST(Win32Information, CopiesEveryField) {
  Win32Information client(L"Name", L"Detail", 8, 9);
  client.Version.Build = 3;
  client.Version.Revision = 4;
  client.Id = L"changed";
  Win32Information assigned;
  assigned = client;
  for (const Win32Information& copy : {Win32Information(client), assigned}) {
    EXPECT_EQ(copy.Type, ClientType::Win32);
    EXPECT_EQ(copy.Id, L"changed");
    EXPECT_EQ(copy.Name, L"Name");
    EXPECT_EQ(copy.Detail, L"Detail");
    EXPECT_EQ(copy.Version.Build, 3);
    EXPECT_EQ(copy.Version.Revision, 4);
  }
}

TEST(IClientInformation, CopiesATypeThatWasChanged) {
  UwpInformation store;
  store.Type = ClientType::Win32;
  UwpInformation storeAssigned;
  storeAssigned = store;
  EXPECT_EQ(UwpInformation(store).Type, ClientType::Win32);
  EXPECT_EQ(storeAssigned.Type, ClientType::Win32);

  Win32Information program;
  program.Type = ClientType::Uwp;
  Win32Information programAssigned;
  programAssigned = program;
  EXPECT_EQ(Win32Information(program).Type, ClientType::Uwp);
  EXPECT_EQ(programAssigned.Type, ClientType::Uwp);

  const IClientInformation plain(ClientType::Win32, L"id");
  IClientInformation plainAssigned;
  plainAssigned = plain;
  EXPECT_EQ(IClientInformation(plain).Type, ClientType::Win32);
  EXPECT_EQ(plainAssigned.Type, ClientType::Win32);
  EXPECT_EQ(plainAssigned.Id, L"id");
}

TEST(UwpInformation, IsNotChangedThroughACopy) {
  const UwpInformation client = FullStoreClient();
  UwpInformation copy(client);
  copy.Name += L"!";
  copy.ExtraText3.clear();
  ExpectFullStoreClient(client);
}

}  // namespace
}  // namespace Zq::Gantry::Server
