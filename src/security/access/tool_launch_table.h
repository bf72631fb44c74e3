#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "wattleaf_export.h"

// The system tools that clients may start. Built while the library loads, never changed.
namespace Zq::Gantry::Security {

/// Under which conditions a tool may be started.
struct ToolLaunchRule {
  /// Package family names that may start the tool; none means that the caller is not tested.
  std::vector<std::wstring> AllowedFamilies;
  /// Whether the row holds also for a caller that asks for the restricted mode.
  bool AllowWhenRestricted = false;
  /// Judges the tool's command line; may be empty.
  std::function<bool(std::wstring)> ArgumentCheck;
};

/// By the program's path with its variable unexpanded, ordered by plain character value.
using ToolLaunchRules = std::map<std::wstring, ToolLaunchRule>;

extern WATTLEAF_API const ToolLaunchRules ToolLaunchTable;

}  // namespace Zq::Gantry::Security
