#include "security/access/tool_launch.h"

#include <windows.h>

#include <shellapi.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/win32/owners.h"
#include "security/trust/trusted_keys.h"
#include "security/trust/util_helper.h"
#include "security/trust/zq_authenticode_helper.h"

namespace Zq::Gantry::Security {

namespace {

using Server::Services::UtilHelper;

/// Null is an empty text.
const wchar_t* OrEmpty(const wchar_t* text) { return text == nullptr ? L"" : text; }

bool IsSamePath(const std::wstring& first, const std::wstring& second) {
  return first.size() == second.size() && UtilHelper::BeginsWith(first, second);
}

/// The row of a tool; null if there is none.
const ToolLaunchRule* FindRule(const ToolLaunchRules& table, const wchar_t* toolPath,
                               const wchar_t* component) {
  const std::wstring tool = UtilHelper::GetFullExpandedPath(toolPath, component);
  // An empty path would equal a key that cannot be expanded either.
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

/// The arguments without the program's name; absent if the text cannot be split.
std::optional<std::vector<std::wstring>> TrySplit(const std::wstring& commandLine) {
  // The call takes the first word for the program's name and splits it by other rules.
  const std::wstring whole = L"test.exe " + commandLine;
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(whole.c_str(), &count);
  const Platform::UniqueLocalBlock block(words);
  if (words == nullptr || count < 1) return {};
  return std::vector<std::wstring>(words + 1, words + count);
}

bool IsSwitch(const std::wstring& argument) {
  return !argument.empty() && argument.front() == L'/';
}

/// Kept on purpose: the signature check takes the path as written, the check of its place expands
/// the variables (test ToolArguments.AreVerifiedAsWrittenAndLocatedAfterExpansion).
bool IsServiceFile(const std::wstring& path) {
  return ZQAuthenticodeHelper::IsFileTrusted(path.c_str(), &ServiceTrustedKeys) &&
         ZQAuthenticodeHelper::IsPathAllowed(path.c_str());
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
  // Kept on purpose: the check is called even if the tool itself was refused (test
  // ToolLaunch.JudgesTheCommandLineOfARefusedToolToo).
  if (rule->ArgumentCheck && !rule->ArgumentCheck(OrEmpty(request.commandLine))) allowed = false;
  return allowed;
}

bool CheckRegsvr32Arguments(const std::wstring& commandLine) {
  const std::optional<std::vector<std::wstring>> arguments = TrySplit(commandLine);
  if (!arguments) return false;
  // Kept on purpose: files after the first are not looked at (test
  // CheckRegsvr32Arguments.ChecksTheFirstFileOnly).
  const auto file = std::find_if_not(arguments->begin(), arguments->end(), IsSwitch);
  return file == arguments->end() || IsServiceFile(*file);
}

bool CheckRundll32Arguments(const std::wstring& commandLine) {
  const std::optional<std::vector<std::wstring>> arguments = TrySplit(commandLine);
  if (!arguments) return false;
  if (arguments->empty() || arguments->front().empty()) return true;
  // Kept on purpose: a comma inside quotes also ends the path (test
  // CheckRundll32Arguments.CutsThePathAtAQuotedComma).
  const std::wstring& first = arguments->front();
  return IsServiceFile(first.substr(0, first.find(L',')));
}

}  // namespace Zq::Gantry::Security
