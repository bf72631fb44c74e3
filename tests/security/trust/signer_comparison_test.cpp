#include "security/trust/zq_authenticode_helper.h"

#include <gtest/gtest.h>

#include "security/trust/signer_descriptor.h"

using namespace Zq::Gantry::Security;
using Helper = ZQAuthenticodeHelper;

namespace {

SignerDescriptor WithResult(std::uint32_t result) {
  SignerDescriptor signer;
  signer.verifyResult = result;
  return signer;
}

SignerDescriptor WithKey(const std::string& key, std::uint32_t result = kVerified) {
  SignerDescriptor signer = WithResult(result);
  signer.publicKey = key;
  return signer;
}

SignerDescriptor WithName(const std::wstring& name) {
  SignerDescriptor signer;
  signer.commonName = name;
  return signer;
}

}  // namespace

TEST(IsListedResult, AcceptsVerifiedExpiredAndUntrustedRootOnly) {
  EXPECT_EQ(kVerified, 0u);
  EXPECT_EQ(kVerifiedButExpired, 2148204801u);  // 0x800B0101
  EXPECT_EQ(kUntrustedRoot, 2148204809u);       // 0x800B0109
  EXPECT_TRUE(IsListedResult(0));
  EXPECT_TRUE(IsListedResult(0x800B0101));
  EXPECT_TRUE(IsListedResult(0x800B0109));
  for (const std::uint32_t other : {1u, 0x800B0100u, 0x80096010u, 0x800B010Cu, 0x800B0102u}) {
    EXPECT_FALSE(IsListedResult(other)) << std::hex << other;
  }
}

TEST(IsTrustedByWindows, AcceptsVerifiedAndExpiredOnly) {
  struct Row {
    const char* label;
    SignatureList signatures;
    bool expected;
  };
  const Row rows[] = {
      {"no signature", {}, false},
      {"verified", {WithResult(0)}, true},
      {"expired", {WithResult(0x800B0101)}, true},
      {"untrusted root", {WithResult(0x800B0109)}, false},
      {"another code", {WithResult(0x800B0100)}, false},
      {"verified comes last", {WithResult(0x800B0109), WithResult(0)}, true},
      {"two untrusted roots", {WithResult(0x800B0109), WithResult(0x800B0109)}, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Helper::IsTrustedByWindows(row.signatures), row.expected) << row.label;
  }
}

TEST(IsTrustedByMeridian, ComparesKeysByteByByte) {
  const KeyList keys = {"30 0a", "30 0b"};
  struct Row {
    const char* label;
    SignatureList signatures;
    bool expected;
  };
  const Row rows[] = {
      {"first key", {WithKey("30 0a")}, true},
      {"last key", {WithKey("30 0b")}, true},
      {"second signature", {WithKey("31"), WithKey("30 0b")}, true},
      {"no such key", {WithKey("30 0c")}, false},
      {"shorter", {WithKey("30 0")}, false},
      {"longer", {WithKey("30 0a ")}, false},
      {"upper case", {WithKey("30 0A")}, false},
      {"no key", {WithKey("")}, false},
      {"no signature", {}, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Helper::IsTrustedByMeridian(row.signatures, &keys), row.expected) << row.label;
  }
}

TEST(IsTrustedByMeridian, AcceptsASignatureOfAnyVerdict) {
  const KeyList keys = {"30 0a"};
  for (const std::uint32_t result : {0u, 0x800B0101u, 0x800B0109u}) {
    EXPECT_TRUE(Helper::IsTrustedByMeridian({WithKey("30 0a", result)}, &keys)) << result;
  }
}

TEST(IsTrustedByMeridian, IsFalseWithoutKeys) {
  const KeyList none;
  EXPECT_FALSE(Helper::IsTrustedByMeridian({WithKey("30 0a")}, nullptr));
  EXPECT_FALSE(Helper::IsTrustedByMeridian({WithKey("30 0a")}, &none));
}

TEST(IsTrustedByMeridian, NeverMatchesAListedKeyInUpperCase) {
  const KeyList keys = {"30 0A"};
  EXPECT_FALSE(Helper::IsTrustedByMeridian({WithKey("30 0a")}, &keys));
}

TEST(IsTrustedByMeridian, RefusesASignerWithoutAReadableKeyWhenTheListHasAnEmptyText) {
  const KeyList keys = {"", "30 0a"};
  EXPECT_FALSE(Helper::IsTrustedByMeridian({WithKey("")}, &keys));
  EXPECT_FALSE(Helper::IsTrustedByMeridian({WithKey(""), WithKey("30 0b")}, &keys));
  EXPECT_TRUE(Helper::IsTrustedByMeridian({WithKey(""), WithKey("30 0a")}, &keys));
}

TEST(SubjectsMatch, NeedsOneEqualCommonName) {
  struct Row {
    const char* label;
    SignatureList first;
    SignatureList second;
    bool expected;
  };
  const Row rows[] = {
      {"equal", {WithName(L"A")}, {WithName(L"A")}, true},
      {"last of both",
       {WithName(L"B"), WithName(L"A")},
       {WithName(L"C"), WithName(L"D"), WithName(L"A")},
       true},
      {"other", {WithName(L"A")}, {WithName(L"B")}, false},
      {"other case", {WithName(L"A")}, {WithName(L"a")}, false},
      {"prefix", {WithName(L"AB")}, {WithName(L"A")}, false},
      {"first is empty", {}, {WithName(L"A")}, false},
      {"second is empty", {WithName(L"A")}, {}, false},
      {"both empty", {}, {}, false},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Helper::SubjectsMatch(row.first, row.second), row.expected) << row.label;
  }
}

TEST(SubjectsMatch, ComparesNoOtherField) {
  SignerDescriptor first(L"A", L"unit", L"place", L"firm", L"state", L"US", L"issuer");
  SignerDescriptor second = WithName(L"A");
  EXPECT_TRUE(Helper::SubjectsMatch({first}, {second}));
  second = first;
  second.commonName = L"B";
  EXPECT_FALSE(Helper::SubjectsMatch({first}, {second}));
}

TEST(PublicKeysMatch, NeedsOneEqualKey) {
  EXPECT_TRUE(Helper::PublicKeysMatch({WithKey("31"), WithKey("30 0a")}, {WithKey("30 0a")}));
  EXPECT_TRUE(Helper::PublicKeysMatch({WithKey("30 0a")}, {WithKey("31"), WithKey("30 0a")}));
  EXPECT_FALSE(Helper::PublicKeysMatch({WithKey("30 0a")}, {WithKey("30 0A")}));
  EXPECT_FALSE(Helper::PublicKeysMatch({WithKey("30 0a")}, {WithKey("30 0")}));
  EXPECT_FALSE(Helper::PublicKeysMatch({}, {WithKey("30 0a")}));
  EXPECT_FALSE(Helper::PublicKeysMatch({WithKey("30 0a")}, {}));
  EXPECT_FALSE(Helper::PublicKeysMatch({}, {}));
}

TEST(PublicKeysMatch, NeverMatchesKeysThatCouldNotBeRead) {
  EXPECT_FALSE(Helper::PublicKeysMatch({WithKey("")}, {WithKey("")}));
  EXPECT_FALSE(Helper::PublicKeysMatch({WithKey(""), WithKey("31")}, {WithKey(""), WithKey("30")}));
  EXPECT_TRUE(Helper::PublicKeysMatch({WithKey(""), WithKey("30")}, {WithKey(""), WithKey("30")}));
}
