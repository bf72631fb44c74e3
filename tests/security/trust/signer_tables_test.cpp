#include "security/trust/signer_tables.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <type_traits>

#include "security/trust/zq_authenticode_helper.h"

using namespace Zq::Gantry::Security;

namespace {

// The fields of a row in the order of SignerDescriptor.
using Row = std::vector<std::wstring>;

Row FieldsOf(const SignerDescriptor& row) {
  return {row.commonName,   row.organizationalUnit,
          row.organization, row.locality,
          row.state,        row.country,
          row.issuer};
}

#if defined(__GNUC__)
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif

constexpr const wchar_t* kAuthority = L"DigiCert SHA2 Assured ID Code Signing CA";

}  // namespace

TEST(SignerDescriptor, ConstructorTakesTextsInAnotherOrderThanTheFields) {
  const SignerDescriptor row(L"cn", L"ou", L"l", L"o", L"s", L"c", L"i");
  EXPECT_EQ(FieldsOf(row), (Row{L"cn", L"ou", L"o", L"l", L"s", L"c", L"i"}));
  EXPECT_EQ(row.publicKey, "");
}

TEST(SignerTables, ZqHasTwoRowsThatDifferInTheOrganizationalUnit) {
  ASSERT_EQ(ZqSignerRows.size(), 2u);
  EXPECT_EQ(FieldsOf(ZqSignerRows[0]), (Row{L"ZQ Inc.", L"ZQ Assurance", L"ZQ Inc.", L"Elmhurst",
                                            L"California", L"US", kAuthority}));
  EXPECT_EQ(FieldsOf(ZqSignerRows[1]),
            (Row{L"ZQ Inc.", L"", L"ZQ Inc.", L"Elmhurst", L"California", L"US", kAuthority}));
}

TEST(SignerTables, DropboxHasOneRow) {
  ASSERT_EQ(DropboxSignerRows.size(), 1u);
  EXPECT_EQ(FieldsOf(DropboxSignerRows[0]),
            (Row{L"Dropbox, Inc", L"", L"Dropbox, Inc", L"San Francisco", L"California", L"US",
                 kAuthority}));
}

TEST(SignerTables, MicrosoftHasABlankBeforeItsOrganizationAndNoIssuer) {
  ASSERT_EQ(MicrosoftSignerRows.size(), 1u);
  EXPECT_EQ(FieldsOf(MicrosoftSignerRows[0]),
            (Row{L"Microsoft Corporation", L"", L" Microsoft Corporation", L"Redmond",
                 L"Washington", L"US", L""}));
}

TEST(SignerTables, BitdefenderHasNoState) {
  ASSERT_EQ(BitdefenderSignerRows.size(), 1u);
  EXPECT_EQ(FieldsOf(BitdefenderSignerRows[0]), (Row{L"Bitdefender SRL", L"", L"Bitdefender SRL",
                                                     L"Bucharest", L"", L"RO", kAuthority}));
}

TEST(SignerTables, NoRowHasAPublicKey) {
  for (const auto* table :
       {&ZqSignerRows, &DropboxSignerRows, &MicrosoftSignerRows, &BitdefenderSignerRows}) {
    for (const SignerDescriptor& row : *table) EXPECT_EQ(row.publicKey, "");
  }
}

TEST(SignerTables, CannotBeChanged) {
  EXPECT_TRUE(std::is_const_v<decltype(ZqSignerRows)>);
  EXPECT_TRUE(std::is_const_v<decltype(DropboxSignerRows)>);
  EXPECT_TRUE(std::is_const_v<decltype(MicrosoftSignerRows)>);
  EXPECT_TRUE(std::is_const_v<decltype(BitdefenderSignerRows)>);
}

TEST(SignerDescriptor, HoldsItsFieldsInOrder) {
  constexpr std::size_t kWide = sizeof(std::wstring);
  constexpr std::size_t kFirst = sizeof(std::string) + 8;
  EXPECT_EQ(offsetof(SignerDescriptor, publicKey), 0u);
  EXPECT_EQ(offsetof(SignerDescriptor, verifyResult), sizeof(std::string));
  EXPECT_EQ(offsetof(SignerDescriptor, commonName), kFirst);
  EXPECT_EQ(offsetof(SignerDescriptor, organizationalUnit), kFirst + kWide);
  EXPECT_EQ(offsetof(SignerDescriptor, organization), kFirst + 2 * kWide);
  EXPECT_EQ(offsetof(SignerDescriptor, locality), kFirst + 3 * kWide);
  EXPECT_EQ(offsetof(SignerDescriptor, state), kFirst + 4 * kWide);
  EXPECT_EQ(offsetof(SignerDescriptor, country), kFirst + 5 * kWide);
  EXPECT_EQ(offsetof(SignerDescriptor, issuer), kFirst + 6 * kWide);
  EXPECT_EQ(sizeof(SignerDescriptor), kFirst + 7 * kWide);
}

TEST(FileHash, HoldsItsFieldsInOrder) {
  EXPECT_EQ(offsetof(FileHash, bytes), 0u);
  EXPECT_EQ(offsetof(FileHash, hexText), sizeof(std::vector<std::uint8_t>));
  EXPECT_EQ(sizeof(FileHash), sizeof(std::vector<std::uint8_t>) + sizeof(std::wstring));
}
