// How often, and for which characters, a comparison without regard to case asks the C library. A
// program of its own, because it replaces towlower of the whole program.
#include <gtest/gtest.h>

#include <cwctype>
#include <string>

#include "security/access/rule_judges.h"
#include "security/trust/path_rules.h"

namespace {

int calls = 0;
bool isTurkish = false;

}  // namespace

/// A C library that folds ASCII and Cyrillic letters, and, as in Turkish, "I" to a dotless i.
extern "C" std::wint_t towlower(std::wint_t code) noexcept {
  ++calls;
  if (isTurkish && code == L'I') return L'\u0131';
  if (code >= L'A' && code <= L'Z') return code - L'A' + L'a';
  return code >= L'\u0410' && code <= L'\u042F' ? code + 0x20 : code;
}

namespace Zq::Gantry::Security {
namespace {

/// The number of calls of towlower that `judge` needs.
template <typename Judge>
int CallsOf(Judge judge) {
  calls = 0;
  judge();
  return calls;
}

TEST(HasPrefix, FoldsAsTheCLibraryDoesAtTheTime) {
  EXPECT_TRUE(HasPrefix(L"TITLE", L"title"));
  isTurkish = true;
  EXPECT_FALSE(HasPrefix(L"TITLE", L"title"));
  EXPECT_TRUE(HasPrefix(L"TITLE", L"t\u0131tle"));
  EXPECT_TRUE(HasPrefix(L"TITLE", L"TITLE"));
  EXPECT_FALSE(BeginsWithFromList(L"x,title", L"TITLE"));
  isTurkish = false;
  EXPECT_TRUE(BeginsWithFromList(L"x,title", L"TITLE"));
}

TEST(HasPrefix, AsksTheCLibraryForUnequalCharactersOnly) {
  const std::wstring text(1'000'000, L'A');
  EXPECT_EQ(CallsOf([&] { EXPECT_TRUE(HasPrefix(text, text)); }), 0);
  EXPECT_EQ(CallsOf([&] { EXPECT_FALSE(HasPrefix(text, L"AAx")); }), 2);
  EXPECT_EQ(CallsOf([&] { EXPECT_FALSE(HasPrefix(L"AA", text)); }), 0);
}

TEST(HasPrefix, AsksOnceForEachAsciiCharacter) {
  const std::wstring upper(1'000'000, L'A');
  const std::wstring lower(1'000'000, L'a');
  EXPECT_EQ(CallsOf([&] { EXPECT_TRUE(HasPrefix(upper, lower)); }), 2);
}

TEST(HasPrefix, AsksTwiceForEachPairBeyondAscii) {
  const std::wstring upper(1000, L'\u0416');
  const std::wstring lower(1000, L'\u0436');
  EXPECT_EQ(CallsOf([&] { EXPECT_TRUE(HasPrefix(upper, lower)); }), 2000);
}

TEST(BeginsWithFromList, AsksOnceForEachAsciiCharacterOfTheWholeList) {
  std::wstring list;
  for (int i = 0; i < 100'000; ++i) list += L"red,";
  EXPECT_EQ(CallsOf([&] { EXPECT_FALSE(BeginsWithFromList(list, L"REST")); }), 6)
      << "R and r, E and e, S and d";
}

}  // namespace
}  // namespace Zq::Gantry::Security
