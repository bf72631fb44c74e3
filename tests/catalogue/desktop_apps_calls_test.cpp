#include <gtest/gtest.h>

#include <string>

#include "catalogue/desktop_apps.h"
#include "catalogue/registry_calls.h"
#include "catalogue/scratch_key.h"

using TestSupport::RegistryCalls;
using TestSupport::ScratchKey;
using namespace Zq::Gantry::Server::Services::Wattleaf;

// The registry calls of AddProgramsUnder, and failures of these calls.
namespace {

class AddProgramsUnderRegistryTest : public testing::Test {
 protected:
  AddProgramsUnderRegistryTest() {
    key_.SetText(L"Alder", L"DisplayName", L"Alder");
    key_.SetText(L"Birch", L"DisplayName", L"Birch");
    key_.SetText(L"Cedar", L"DisplayName", L"Cedar");
  }

  DesktopApps Read() const {
    DesktopApps apps;
    AddProgramsUnder(key_.Hive(), key_.Path(), apps);
    return apps;
  }

  const ScratchKey key_;
};

}  // namespace

TEST_F(AddProgramsUnderRegistryTest, OpensKeysForReadingOnly) {
  RegistryCalls calls;
  EXPECT_EQ(Read().size(), 3u);
  ASSERT_EQ(calls.opened.size(), 4u);
  EXPECT_EQ(calls.opened[0].path, key_.Path());
  EXPECT_EQ(calls.opened[1].path, L"Alder");
  for (const auto& one : calls.opened) {
    EXPECT_EQ(one.options, 0u);
    EXPECT_EQ(one.access, 131097u);
  }
}

TEST_F(AddProgramsUnderRegistryTest, PassesTheLargestNameAndTextLengths) {
  RegistryCalls calls;
  Read();
  ASSERT_EQ(calls.enumerated.size(), 4u);
  for (DWORD index = 0; index < 4; ++index) {
    EXPECT_EQ(calls.enumerated[index].index, index);
    EXPECT_EQ(calls.enumerated[index].nameChars, 256u);
  }
  EXPECT_EQ(calls.enumerated[3].status, 259);
  ASSERT_EQ(calls.queried.size(), 6u);
  EXPECT_EQ(calls.queried[0].value, L"DisplayName");
  EXPECT_EQ(calls.queried[0].bytes, 512u);
  EXPECT_EQ(calls.queried[1].value, L"DisplayIcon");
  EXPECT_EQ(calls.queried[1].bytes, 256u);
}

TEST_F(AddProgramsUnderRegistryTest, DoesNotQueryTheIconOfAKeyWithoutAName) {
  const ScratchKey bare;
  bare.AddSubkey(L"1");
  RegistryCalls calls;
  DesktopApps apps;
  AddProgramsUnder(bare.Hive(), bare.Path(), apps);
  ASSERT_EQ(calls.queried.size(), 1u);
  EXPECT_EQ(calls.queried[0].value, L"DisplayName");
}

TEST_F(AddProgramsUnderRegistryTest, SkipsOnlyTheIndexThatFails) {
  RegistryCalls calls;
  calls.onEnumerate = [](DWORD index, wchar_t*, DWORD* chars) -> std::optional<LSTATUS> {
    if (index != 1) return std::nullopt;
    *chars = 3;
    return ERROR_ACCESS_DENIED;
  };
  EXPECT_EQ(Read(), (DesktopApps{{L"Alder", L""}, {L"Cedar", L""}}));
  EXPECT_EQ(calls.enumerated[2].nameChars, 256u) << "the length is not reset for the next index";
}

TEST_F(AddProgramsUnderRegistryTest, RetriesASubkeyUntilItOpens) {
  RegistryCalls calls;
  int tries = 0;
  calls.onOpen = [&](const std::wstring& path) -> std::optional<LSTATUS> {
    if (path == L"Birch" && ++tries < 50) return ERROR_ACCESS_DENIED;
    return std::nullopt;
  };
  // This system ignores the length that is passed in.
  calls.onEnumerate = [](DWORD, wchar_t*, DWORD* chars) -> std::optional<LSTATUS> {
    *chars = 256;
    return std::nullopt;
  };
  EXPECT_EQ(Read(), (DesktopApps{{L"Alder", L""}, {L"Birch", L""}, {L"Cedar", L""}}));
  EXPECT_EQ(tries, 50);
  ASSERT_EQ(calls.enumerated.size(), 53u);
  for (std::size_t n = 1; n <= 50; ++n) EXPECT_EQ(calls.enumerated[n].index, 1u);
  EXPECT_EQ(calls.enumerated[2].nameChars, 5u) << "the length is not that of the previous call";
}

TEST_F(AddProgramsUnderRegistryTest, SkipsASubkeyThatNeverOpensWhenItsNameNoLongerFits) {
  RegistryCalls calls;
  calls.onOpen = [](const std::wstring& path) -> std::optional<LSTATUS> {
    if (path == L"Birch") return ERROR_ACCESS_DENIED;
    return std::nullopt;
  };
  EXPECT_EQ(Read(), (DesktopApps{{L"Alder", L""}, {L"Cedar", L""}}));
  ASSERT_EQ(calls.enumerated.size(), 5u);
  EXPECT_EQ(calls.enumerated[2].index, 1u);
  EXPECT_EQ(calls.enumerated[2].nameChars, 5u);
  EXPECT_EQ(calls.enumerated[2].status, 234) << "not ERROR_MORE_DATA";
  EXPECT_EQ(calls.enumerated[3].index, 2u);
  EXPECT_EQ(calls.enumerated[3].nameChars, 256u);
}

TEST_F(AddProgramsUnderRegistryTest, StopsAfterTenThousandFailuresInARow) {
  RegistryCalls calls;
  calls.onEnumerate = [](DWORD, wchar_t*, DWORD*) { return ERROR_ACCESS_DENIED; };
  EXPECT_TRUE(Read().empty());
  ASSERT_EQ(calls.enumerated.size(), 10'000u);
  EXPECT_EQ(calls.enumerated.back().index, 9'999u);
}

TEST_F(AddProgramsUnderRegistryTest, CountsOnlyFailuresInARow) {
  RegistryCalls calls;
  calls.onEnumerate = [](DWORD index, wchar_t* name, DWORD* chars) -> std::optional<LSTATUS> {
    if (index == 19'999) return ERROR_NO_MORE_ITEMS;
    if (index != 9'999) return ERROR_ACCESS_DENIED;
    std::wstring(L"Birch\0", 6).copy(name, 6);
    *chars = 5;
    return ERROR_SUCCESS;
  };
  EXPECT_EQ(Read(), (DesktopApps{{L"Birch", L""}}));
  EXPECT_EQ(calls.enumerated.size(), 20'000u);
}
