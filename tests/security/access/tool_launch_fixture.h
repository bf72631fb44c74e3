#pragma once

#include <gmock/gmock.h>

#include <string>
#include <utility>

#include "security/access/judged_files.h"
#include "security/access/tool_launch.h"

namespace TestSupport {

inline constexpr wchar_t kHarbourDesk[] = L"C7E40B19.ZQHarbourDesk_q7m3xk2tdw9pa";
inline constexpr const wchar_t* kTools[] = {L"regsvr32.exe", L"DISM.exe", L"sfc.exe",
                                            L"rundll32.exe", L"mmc.exe",  L"rstrui.exe"};
inline constexpr wchar_t kSfc[] = L"%windir%\\System32\\sfc.exe";

[[nodiscard]] inline std::wstring System32(const std::wstring& name) {
  return L"C:\\Windows\\System32\\" + name;
}

/// A table with one row, for sfc.exe.
[[nodiscard]] inline Zq::Gantry::Security::ToolLaunchRules SfcRow(
    Zq::Gantry::Security::ToolLaunchRule rule) {
  return {{kSfc, std::move(rule)}};
}

/// Calls IsLaunchAllowedBy. Every tool is signed, and the product's table admits the caller.
class ToolLaunch : public testing::Test {
 protected:
  ToolLaunch() { files_.SignAll(Zq::Gantry::Security::kVerified, "30 0a"); }

  [[nodiscard]] bool IsAllowed(const Zq::Gantry::Security::ToolLaunchRules& table,
                               const wchar_t* tool, bool restricted = false,
                               const wchar_t* line = L"") {
    return IsLaunchAllowedBy(table, {tool, restricted, line, L"component"}, [this] {
      ++familyQueries_;
      return family_;
    });
  }
  [[nodiscard]] bool IsAllowed(const std::wstring& tool) {
    return IsAllowed(Zq::Gantry::Security::ToolLaunchTable, tool.c_str());
  }

  JudgedFiles files_;
  std::wstring family_ = kHarbourDesk;
  int familyQueries_ = 0;
};

}  // namespace TestSupport
