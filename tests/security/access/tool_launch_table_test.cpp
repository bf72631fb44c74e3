#include "security/access/tool_launch_table.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <functional>
#include <type_traits>

#include "security/access/tool_launch.h"

namespace Zq::Gantry::Security {
namespace {

using testing::ElementsAre;

TEST(ToolLaunchTable, HasSixRowsForOneFamilyInOrderOfTheirKeys) {
  std::vector<std::wstring> keys;
  for (const auto& [key, rule] : ToolLaunchTable) {
    keys.push_back(key);
    EXPECT_THAT(rule.AllowedFamilies, ElementsAre(L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pa"));
    EXPECT_TRUE(rule.AllowWhenRestricted);
  }
  EXPECT_THAT(keys,
              ElementsAre(L"%windir%\\System32\\DISM.exe", L"%windir%\\System32\\mmc.exe",
                          L"%windir%\\System32\\regsvr32.exe", L"%windir%\\System32\\rstrui.exe",
                          L"%windir%\\System32\\rundll32.exe", L"%windir%\\System32\\sfc.exe"));
}

TEST(ToolLaunchTable, ChecksTheArgumentsOfTwoTools) {
  using Check = bool (*)(const std::wstring&);
  for (const auto& [key, rule] : ToolLaunchTable) {
    Check expected = nullptr;
    if (key == L"%windir%\\System32\\regsvr32.exe") expected = CheckRegsvr32Arguments;
    if (key == L"%windir%\\System32\\rundll32.exe") expected = CheckRundll32Arguments;
    const Check* const check = rule.ArgumentCheck.target<Check>();
    EXPECT_EQ(check == nullptr ? nullptr : *check, expected);
    EXPECT_EQ(static_cast<bool>(rule.ArgumentCheck), expected != nullptr);
  }
}

TEST(ToolLaunchTable, CannotBeChanged) {
  EXPECT_TRUE(std::is_const_v<decltype(ToolLaunchTable)>);
  EXPECT_TRUE(
      std::is_const_v<std::remove_reference_t<decltype((ToolLaunchTable.begin()->second))>>);
}

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
#endif
TEST(ToolLaunchTable, RulesHoldTheirFieldsInOrder) {
  constexpr std::size_t kFamilies = sizeof(std::vector<std::wstring>);
  EXPECT_EQ(offsetof(ToolLaunchRule, AllowedFamilies), 0U);
  EXPECT_EQ(offsetof(ToolLaunchRule, AllowWhenRestricted), kFamilies);
  EXPECT_EQ(offsetof(ToolLaunchRule, ArgumentCheck), kFamilies + 8);
  EXPECT_EQ(sizeof(ToolLaunchRule), kFamilies + 8 + sizeof(std::function<bool(std::wstring)>));
}
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace
}  // namespace Zq::Gantry::Security
