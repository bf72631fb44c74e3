#pragma once

#include <algorithm>
#include <functional>
#include <string>

#include "security/access/tool_launch_table.h"

// Whether a client may start a tool of the system, and which files the command lines of two tools
// may name. A command line is given without the tool's own name.
namespace Zq::Gantry::Security {

/// Whether a row admits a caller of this package family. A row without families admits every
/// caller; otherwise an empty family is never admitted.
[[nodiscard]] inline bool AdmitsFamily(const ToolLaunchRule& rule, const std::wstring& family) {
  if (rule.AllowedFamilies.empty()) return true;
  if (family.empty()) return false;
  return std::ranges::find(rule.AllowedFamilies, family) != rule.AllowedFamilies.end();
}

/// A client's request to start a tool. All texts are borrowed for the call.
struct ToolLaunchRequest {
  const wchar_t* toolPath;     ///< with or without variables; null names no tool
  bool restricted;             ///< the tool is to be started in the restricted mode
  const wchar_t* commandLine;  ///< null is an empty one
  const wchar_t* component;    ///< the name under which path expansion logs; null is an empty one
};

/// Whether `table` allows the request: the tool is in it, its row admits the caller and, if
/// requested, the restricted mode, the system accepts a signature of the tool, and the row's check
/// accepts the command line. `familyOfCaller` is called at most once, and only for a row that names
/// families. Blocks while files are read.
[[nodiscard]] bool IsLaunchAllowedBy(const ToolLaunchRules& table, const ToolLaunchRequest& request,
                                     const std::function<std::wstring()>& familyOfCaller);

/// Whether the first argument that is not a switch names a file that is trusted like the collector
/// library (ServiceTrustedKeys) and lies in an allowed place. True if there is no such argument,
/// false if the line cannot be split (CommandLineToArgvW).
[[nodiscard]] bool CheckRegsvr32Arguments(const std::wstring& commandLine);

/// The same for the first argument, up to its first comma. True without an argument.
[[nodiscard]] bool CheckRundll32Arguments(const std::wstring& commandLine);

}  // namespace Zq::Gantry::Security
