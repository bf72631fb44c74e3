#pragma once

#include <string>

#include "support/temp_folder.h"

namespace TestSupport {

/// Puts the stand-in of POWERCFG first on the search path and provides a folder for its reports.
/// The destructor restores the current directory, the search path and the settings of the stand-in.
class RealTool {
 public:
  RealTool();
  RealTool(const RealTool&) = delete;
  RealTool& operator=(const RealTool&) = delete;
  ~RealTool();

  /// Sets the environment variable WATTLEAF_POWERCFG_`name`.
  void Set(const std::wstring& name, const std::wstring& value);
  /// Empties the search path, so that no tool is found.
  void Hide();

  [[nodiscard]] const TempFolder& Folder() const { return folder_; }

 private:
  TempFolder folder_;
  std::wstring directoryBefore_;
  std::wstring pathBefore_;
};

[[nodiscard]] std::wstring CurrentDirectory();

}  // namespace TestSupport
