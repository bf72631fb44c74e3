#include "security/trust/trusted_keys.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "embedded_keys.h"

namespace Zq::Gantry::Security {

namespace {

static_assert(kServiceKeyTexts.size() == 1);
static_assert(kPublicKeyPoolTexts.size() == 45);
static_assert(kSingleKeyListTexts.size() == 1);
static_assert(kSecondKeyListTexts.size() == 4);

constexpr std::array kSubsetPositions = {17, 20, 24, 26, 33, 41};

// Positions in the pool: the keys of ServiceTrustedKeys before and after those of the small lists.
constexpr std::array kServicePositionsBefore = {0,  1,  2,  3,  4,  5,  6,  7,  8,
                                                9,  10, 11, 12, 13, 14, 15, 16, 17,
                                                18, 19, 20, 21, 22, 23, 24, 25, 27};
constexpr std::array kServicePositionsAfter = {28, 29, 30, 32, 35, 34, 37, 38, 39, 40, 42, 43, 44};

constexpr std::array kExtendedPositions = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10,
                                           11, 12, 13, 14, 15, 16, 17, 20, 22, 25, 26,
                                           27, 31, 32, 35, 36, 37, 40, 43, 44};
constexpr std::size_t kSecondKeysOfExtended = 3;

template <std::size_t Count>
KeyList FromTexts(const std::array<std::string_view, Count>& texts) {
  return KeyList(texts.begin(), texts.end());
}

template <std::size_t Count>
void AppendFromPool(KeyList& list, const std::array<int, Count>& positions) {
  for (const int position : positions) {
    list.push_back(PublicKeyPool.at(static_cast<std::size_t>(position)));
  }
}

KeyList MakeSubset() {
  KeyList list;
  AppendFromPool(list, kSubsetPositions);
  return list;
}

KeyList MakeServiceKeys() {
  KeyList list = FromTexts(kServiceKeyTexts);
  AppendFromPool(list, kServicePositionsBefore);
  list.push_back(SingleKeyList.at(0));
  list.insert(list.end(), SecondKeyList.begin(), SecondKeyList.end());
  AppendFromPool(list, kServicePositionsAfter);
  return list;
}

KeyList MakeExtendedKeys() {
  KeyList list = {SingleKeyList.at(0)};
  list.insert(list.end(), SecondKeyList.begin(), SecondKeyList.begin() + kSecondKeysOfExtended);
  AppendFromPool(list, kExtendedPositions);
  return list;
}

}  // namespace

// The derived lists copy from the lists above them, so these lines must keep their order.
const KeyList PublicKeyPool = FromTexts(kPublicKeyPoolTexts);
const KeyList SingleKeyList = FromTexts(kSingleKeyListTexts);
const KeyList SecondKeyList = FromTexts(kSecondKeyListTexts);
const KeyList SubsetKeyList = MakeSubset();
const KeyList ServiceTrustedKeys = MakeServiceKeys();
const KeyList ExtendedTrustedKeys = MakeExtendedKeys();

}  // namespace Zq::Gantry::Security
