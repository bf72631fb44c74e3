#include "security/trust/zq_authenticode_helper.h"

#include <gtest/gtest.h>

using namespace Zq::Gantry::Security;

namespace {

SignerDescriptor Parsed(const std::wstring& subject) {
  SignerDescriptor record;
  ZQAuthenticodeHelper::ParseSubject(subject, record);
  return record;
}

SignerDescriptor ParsedField(const std::wstring& line) {
  SignerDescriptor record;
  ZQAuthenticodeHelper::ParseSubjectField(line, record);
  return record;
}

// All text fields joined, to check that nothing was stored.
std::wstring AllText(const SignerDescriptor& record) {
  return record.commonName + record.organizationalUnit + record.organization + record.locality +
         record.state + record.country + record.issuer;
}

}  // namespace

TEST(ParseSubject, StoresEachKnownKeyInItsField) {
  const SignerDescriptor record =
      Parsed(L"C=US\r\nS=California\r\nL=Elmhurst\r\nO=ZQ Inc.\r\nOU=Unit\r\nCN=Name");
  EXPECT_EQ(record.country, L"US");
  EXPECT_EQ(record.state, L"California");
  EXPECT_EQ(record.locality, L"Elmhurst");
  EXPECT_EQ(record.organization, L"ZQ Inc.");
  EXPECT_EQ(record.organizationalUnit, L"Unit");
  EXPECT_EQ(record.commonName, L"Name");
  EXPECT_EQ(record.issuer, L"");
  EXPECT_EQ(record.publicKey, "");
}

TEST(ParseSubject, DoesNothingForAnEmptyText) { EXPECT_EQ(AllText(Parsed(L"")), L""); }

TEST(ParseSubject, ReadsALastLineWithAndWithoutALineEnd) {
  EXPECT_EQ(Parsed(L"O=a\r\nCN=b").commonName, L"b");
  EXPECT_EQ(Parsed(L"O=a\r\nCN=b\r\n").commonName, L"b");
}

TEST(ParseSubject, SplitsOnlyAtCarriageReturnLineFeed) {
  const SignerDescriptor record = Parsed(L"CN=a\nO=b\rOU=c\r\nL=d");
  EXPECT_EQ(record.commonName, L"a\nO=b\rOU=c");
  EXPECT_EQ(record.locality, L"d");
  EXPECT_EQ(record.organization, L"");
}

TEST(ParseSubject, KeepsTheLastOfSeveralEqualKeys) {
  EXPECT_EQ(Parsed(L"OU=one\r\nOU=two\r\nOU=three").organizationalUnit, L"three");
  EXPECT_EQ(Parsed(L"OU=one\r\nOU=").organizationalUnit, L"");
}

TEST(ParseSubject, SkipsLinesThatAreNoFields) {
  const SignerDescriptor record = Parsed(L"\r\ninvalid\r\n\r\nCN=Name\r\n\r\n");
  EXPECT_EQ(AllText(record), L"Name");
}

TEST(ParseSubjectField, SplitsAtTheFirstEqualsSign) {
  EXPECT_EQ(ParsedField(L"CN=A=B").commonName, L"A=B");
}

TEST(ParseSubjectField, TakesTheSecondOfTwoWordsAsTheKey) {
  EXPECT_EQ(ParsedField(L"Foo CN=X").commonName, L"X");
}

TEST(ParseSubjectField, TakesTheTextAfterTheFirstBlankAsTheKey) {
  EXPECT_EQ(AllText(ParsedField(L"Foo Bar CN=X")), L"");
  EXPECT_EQ(ParsedField(L" CN=X").commonName, L"X");
  EXPECT_EQ(AllText(ParsedField(L"CN =X")), L"");
}

TEST(ParseSubjectField, IgnoresUnknownKeys) {
  EXPECT_EQ(AllText(ParsedField(L"E=x")), L"");
  EXPECT_EQ(AllText(ParsedField(L"=x")), L"");
  EXPECT_EQ(AllText(ParsedField(L"ST=x")), L"");
}

TEST(ParseSubjectField, ComparesKeysCaseSensitively) {
  EXPECT_EQ(AllText(ParsedField(L"cn=x")), L"");
  EXPECT_EQ(AllText(ParsedField(L"Cn=x")), L"");
}

TEST(ParseSubjectField, IgnoresALineWithoutEqualsSign) {
  EXPECT_EQ(AllText(ParsedField(L"CN")), L"");
  EXPECT_EQ(AllText(ParsedField(L"")), L"");
}

TEST(ParseSubjectField, KeepsBlanksInTheValue) {
  EXPECT_EQ(ParsedField(L"O= ZQ  Inc. ").organization, L" ZQ  Inc. ");
}

TEST(ParseSubjectField, LeavesTheOtherFieldsUnchanged) {
  SignerDescriptor record;
  record.commonName = L"before";
  record.verifyResult = 7;
  ZQAuthenticodeHelper::ParseSubjectField(L"E=x", record);
  ZQAuthenticodeHelper::ParseSubjectField(L"O=y", record);
  EXPECT_EQ(record.commonName, L"before");
  EXPECT_EQ(record.organization, L"y");
  EXPECT_EQ(record.verifyResult, 7u);
}
