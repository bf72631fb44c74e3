#include <algorithm>

#include "security/access/tool_launch.h"
#include "security/trust/util_helper.h"
#include "security/trust/zq_authenticode_helper.h"

namespace Zq::Gantry::Security {

namespace {

using Server::Services::UtilHelper;

/// An absent text is an empty one.
const wchar_t* OrEmpty(const wchar_t* text) { return text == nullptr ? L"" : text; }

bool IsSamePath(const std::wstring& first, const std::wstring& second) {
  return first.size() == second.size() && UtilHelper::BeginsWith(first, second);
}

/// The row of a tool; null where it has none.
const ToolLaunchRule* FindRule(const ToolLaunchRules& table, const wchar_t* toolPath,
                               const wchar_t* component) {
  const std::wstring tool = UtilHelper::GetFullExpandedPath(toolPath, component);
  // A key that cannot be expanded either would be the same path.
  if (tool.empty()) return nullptr;
  const auto row = std::find_if(table.begin(), table.end(), [&](const auto& entry) {
    return IsSamePath(tool, UtilHelper::GetFullExpandedPath(entry.first.c_str(), component));
  });
  return row == table.end() ? nullptr : &row->second;
}

bool IsAcceptedByWindows(const wchar_t* toolPath, const wchar_t* component) {
  const std::wstring tool = UtilHelper::GetFullExpandedPath(toolPath, component);
  return ZQAuthenticodeHelper::IsTrustedByWindows(
      ZQAuthenticodeHelper::GetAllSignatures(tool.c_str()));
}

}  // namespace

bool IsLaunchAllowedBy(const ToolLaunchRules& table, const ToolLaunchRequest& request,
                       const std::function<std::wstring()>& familyOfCaller) {
  const wchar_t* const component = OrEmpty(request.component);
  const ToolLaunchRule* const rule = FindRule(table, request.toolPath, component);
  if (rule == nullptr) return false;

  if (!rule->AllowedFamilies.empty() && !AdmitsFamily(*rule, familyOfCaller())) return false;
  if (request.restricted && !rule->AllowWhenRestricted) return false;

  bool allowed = IsAcceptedByWindows(request.toolPath, component);
  // Asked also where the tool itself was refused (test
  // ToolLaunch.TheCommandLineIsJudgedAlsoWhereTheToolIsRefused).
  if (rule->ArgumentCheck && !rule->ArgumentCheck(OrEmpty(request.commandLine))) allowed = false;
  return allowed;
}

}  // namespace Zq::Gantry::Security
