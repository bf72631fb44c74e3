#include "security/trust/trusted_keys.h"

#include <gtest/gtest.h>

#include <set>
#include <type_traits>

#include "security/trust/zq_authenticode_helper.h"

using namespace Zq::Gantry::Security;

namespace {

// The name of a key by its base list and position: "p0", "single", "second0", or "service".
std::string NameOf(const std::string& key) {
  for (std::size_t i = 0; i < PublicKeyPool.size(); ++i) {
    // Positions 12 and 13 repeat earlier ones and get the names of those.
    if (PublicKeyPool[i] == key) return "p" + std::to_string(i);
  }
  if (SingleKeyList[0] == key) return "single";
  for (std::size_t i = 0; i < SecondKeyList.size(); ++i) {
    if (SecondKeyList[i] == key) return "second" + std::to_string(i);
  }
  return "service";
}

std::string NamesOf(const KeyList& list) {
  std::string names;
  for (const std::string& key : list) names += NameOf(key) + ' ';
  return names;
}

std::size_t DifferentIn(const KeyList& list) {
  return std::set<std::string>(list.begin(), list.end()).size();
}

void ExpectForm(const std::string& key, std::size_t characters, const std::string& begin) {
  EXPECT_EQ(key.size(), characters);
  EXPECT_EQ(key.substr(0, begin.size()), begin);
  EXPECT_EQ(key.substr(key.size() - 15), " 02 03 01 00 01");
  for (std::size_t i = 0; i < key.size(); ++i) {
    const bool isDigit = (key[i] >= '0' && key[i] <= '9') || (key[i] >= 'a' && key[i] <= 'f');
    ASSERT_EQ(i % 3 == 2, key[i] == ' ') << i;
    ASSERT_EQ(i % 3 != 2, isDigit) << i;
  }
}

void ExpectShortForm(const std::string& key) {
  ExpectForm(key, 809, "30 82 01 0a 02 82 01 01 00 ");
}
void ExpectLongForm(const std::string& key) {
  ExpectForm(key, 1193, "30 82 01 8a 02 82 01 81 00 ");
}

bool Passes(std::size_t poolPosition, const KeyList& list) {
  SignerDescriptor signer;
  signer.publicKey = PublicKeyPool.at(poolPosition);
  return ZQAuthenticodeHelper::IsTrustedByMeridian({signer}, &list);
}

}  // namespace

TEST(TrustedKeys, ListsHaveTheirSizes) {
  EXPECT_EQ(PublicKeyPool.size(), 45u);
  EXPECT_EQ(SingleKeyList.size(), 1u);
  EXPECT_EQ(SecondKeyList.size(), 4u);
  EXPECT_EQ(SubsetKeyList.size(), 6u);
  EXPECT_EQ(ServiceTrustedKeys.size(), 46u);
  EXPECT_EQ(ExtendedTrustedKeys.size(), 35u);
}

TEST(TrustedKeys, PoolHas31KeysOf2048BitsAnd14Of3072) {
  ASSERT_EQ(PublicKeyPool.size(), 45u);
  for (std::size_t i = 0; i <= 30; ++i) ExpectShortForm(PublicKeyPool[i]);
  for (std::size_t i = 31; i <= 44; ++i) ExpectLongForm(PublicKeyPool[i]);
}

TEST(TrustedKeys, SmallListsHaveKeysOf2048Bits) {
  for (const std::string& key : SingleKeyList) ExpectShortForm(key);
  for (const std::string& key : SecondKeyList) ExpectShortForm(key);
  ExpectShortForm(ServiceTrustedKeys.at(0));
}

TEST(TrustedKeys, EveryKeyHas809Or1193CharactersAndNoUpperCaseLetters) {
  for (const KeyList* list : {&ServiceTrustedKeys, &ExtendedTrustedKeys, &SubsetKeyList}) {
    for (const std::string& key : *list) {
      EXPECT_TRUE(key.size() == 809 || key.size() == 1193) << key.size();
      EXPECT_EQ(key.find_first_of("ABCDEF"), std::string::npos);
    }
  }
}

TEST(TrustedKeys, PoolRepeatsExactlyTwoKeys) {
  EXPECT_EQ(PublicKeyPool.at(12), PublicKeyPool.at(9));
  EXPECT_EQ(PublicKeyPool.at(13), PublicKeyPool.at(11));
  EXPECT_EQ(DifferentIn(PublicKeyPool), 43u);
}

TEST(TrustedKeys, ListsHave49DifferentKeysInAll) {
  KeyList all = PublicKeyPool;
  all.push_back(SingleKeyList.at(0));
  all.insert(all.end(), SecondKeyList.begin(), SecondKeyList.end());
  EXPECT_EQ(DifferentIn(all), 48u);
  all.push_back(ServiceTrustedKeys.at(0));
  EXPECT_EQ(DifferentIn(all), 49u);
  EXPECT_EQ(DifferentIn(ServiceTrustedKeys), 44u);
  EXPECT_EQ(DifferentIn(ExtendedTrustedKeys), 33u);
}

TEST(TrustedKeys, SubsetIsTakenFromThePoolByPosition) {
  EXPECT_EQ(NamesOf(SubsetKeyList), "p17 p20 p24 p26 p33 p41 ");
}

TEST(TrustedKeys, ServiceListIsComposedByPosition) {
  EXPECT_EQ(NamesOf(ServiceTrustedKeys),
            "service p0 p1 p2 p3 p4 p5 p6 p7 p8 p9 p10 p11 p9 p11 p14 p15 p16 p17 p18 p19 p20 p21 "
            "p22 p23 p24 p25 p27 single second0 second1 second2 second3 p28 p29 p30 p32 p35 p34 "
            "p37 p38 p39 p40 p42 p43 p44 ");
}

TEST(TrustedKeys, ExtendedListIsComposedByPosition) {
  EXPECT_EQ(NamesOf(ExtendedTrustedKeys),
            "single second0 second1 second2 p0 p1 p2 p3 p4 p5 p6 p7 p8 p9 p10 p11 p9 p11 p14 p15 "
            "p16 p17 p20 p22 p25 p26 p27 p31 p32 p35 p36 p37 p40 p43 p44 ");
}

TEST(TrustedKeys, PoolPosition26PassesWithTheExtendedListOnly) {
  EXPECT_TRUE(Passes(26, ExtendedTrustedKeys));
  EXPECT_FALSE(Passes(26, ServiceTrustedKeys));
}

TEST(TrustedKeys, PoolPosition24PassesWithTheServiceListOnly) {
  EXPECT_TRUE(Passes(24, ServiceTrustedKeys));
  EXPECT_FALSE(Passes(24, ExtendedTrustedKeys));
}

TEST(TrustedKeys, PoolPositions33And41PassWithNeitherList) {
  for (const std::size_t position : {33u, 41u}) {
    EXPECT_FALSE(Passes(position, ServiceTrustedKeys)) << position;
    EXPECT_FALSE(Passes(position, ExtendedTrustedKeys)) << position;
  }
}

TEST(TrustedKeys, ServiceKeyIsInNoOtherList) {
  const std::string& key = ServiceTrustedKeys.at(0);
  for (const KeyList* list :
       {&PublicKeyPool, &SingleKeyList, &SecondKeyList, &SubsetKeyList, &ExtendedTrustedKeys}) {
    for (const std::string& other : *list) EXPECT_NE(other, key);
  }
}

TEST(TrustedKeys, CannotBeChanged) {
  EXPECT_TRUE(std::is_const_v<decltype(PublicKeyPool)>);
  EXPECT_TRUE(std::is_const_v<decltype(SingleKeyList)>);
  EXPECT_TRUE(std::is_const_v<decltype(SecondKeyList)>);
  EXPECT_TRUE(std::is_const_v<decltype(SubsetKeyList)>);
  EXPECT_TRUE(std::is_const_v<decltype(ServiceTrustedKeys)>);
  EXPECT_TRUE(std::is_const_v<decltype(ExtendedTrustedKeys)>);
}
