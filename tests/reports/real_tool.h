#pragma once

#include <string>

#include "support/temp_folder.h"

namespace TestSupport {

/// Lets the command interpreter find the stand-in of POWERCFG before any other, and gives the tool
/// a folder. The current directory, the search path and what the tool was told are put back at the
/// end.
class RealTool {
 public:
  RealTool();
  RealTool(const RealTool&) = delete;
  RealTool& operator=(const RealTool&) = delete;
  ~RealTool();

  /// Sets WATTLEAF_POWERCFG_`name`.
  void Tell(const std::wstring& name, const std::wstring& value);
  /// Lets the command interpreter find no program at all.
  void Hide();

  const TempFolder& Folder() const { return folder_; }

 private:
  TempFolder folder_;
  std::wstring directoryBefore_;
  std::wstring pathBefore_;
};

std::wstring CurrentDirectory();

}  // namespace TestSupport
