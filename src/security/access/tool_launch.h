#pragma once

#include <functional>
#include <string>

#include "security/access/tool_launch_table.h"

namespace Zq::Gantry::Security {

/// Whether a row admits a caller of this package family. An empty family is nobody's, and a row
/// that names no families admits everybody.
bool AdmitsFamily(const ToolLaunchRule& rule, const std::wstring& family);

/// A client's wish to start a tool.
struct ToolLaunchRequest {
  const wchar_t* toolPath;     ///< with or without variables; null names no tool
  bool restricted;             ///< the caller asks for the restricted mode
  const wchar_t* commandLine;  ///< without the tool's name; null is an empty one
  const wchar_t* component;    ///< for whom the expansion of paths is logged
};

/// Whether `table` allows the wish: the tool stands in it, its row admits the caller, the system
/// accepts a signature of the tool, and the row's check takes the command line. `familyOfCaller`
/// is asked at most once, and only for a row that names families.
bool IsLaunchAllowedBy(const ToolLaunchRules& table, const ToolLaunchRequest& request,
                       const std::function<std::wstring()>& familyOfCaller);

}  // namespace Zq::Gantry::Security
