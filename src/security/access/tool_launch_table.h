#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "wattleaf_export.h"

// The system tools that clients may start. Built while the library loads, never changed, and read
// from any thread afterwards.
namespace Zq::Gantry::Security {

/// The conditions under which a tool may be started.
struct ToolLaunchRule {
  /// Package family names of the callers that may start the tool; if empty, every caller may.
  std::vector<std::wstring> AllowedFamilies;
  /// Whether the tool may also be started in the restricted mode.
  bool AllowWhenRestricted = false;
  /// Judges the tool's command line, without the tool's name; may be empty. It may read files and
  /// block meanwhile.
  std::function<bool(std::wstring)> ArgumentCheck;
};

/// By the program's path with its variable unexpanded, ordered by character value. Paths are
/// expanded when a launch is judged (ZQAuthenticodeFacade::IsToolLaunchAllowed), and compared
/// without regard to case.
using ToolLaunchRules = std::map<std::wstring, ToolLaunchRule>;

/// Six tools below %windir%\System32, each for one package family:
///   regsvr32, rundll32      only with files that are trusted and lie in an allowed place
///   DISM, sfc, mmc, rstrui  with any command line
/// ZQAuthenticodeFacade::IsToolLaunchAllowed judges by it; a host may also read it.
extern WATTLEAF_API const ToolLaunchRules ToolLaunchTable;

}  // namespace Zq::Gantry::Security
