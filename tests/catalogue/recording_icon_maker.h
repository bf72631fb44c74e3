#pragma once

#include <string>
#include <vector>

#include "catalogue/icon_finder.h"

namespace TestSupport {

inline constexpr char kIconDirectory[] = "C:\\Icons";

/// Records its calls and returns prepared results.
struct RecordingIconMaker : Zq::Gantry::Server::Services::Wattleaf::IconMaker {
  std::vector<std::string> exports;  ///< "executable|directory|display name"
  std::vector<std::string> copies;   ///< "logo|target"
  std::string exported;              ///< result of ExportAppIcon
  bool copySucceeds = true;
  std::string onlyLogo;  ///< if not empty, the one logo whose copy succeeds

  std::string ExportAppIcon(const std::string& executable,
                            const Zq::Gantry::Server::Services::Wattleaf::IconFile& file) override {
    exports.push_back(executable + "|" + std::string(file.directory) + "|" +
                      std::string(file.displayName));
    return exported;
  }

  bool CopyLogo(const std::string& logo, const std::string& target) override {
    copies.push_back(logo + "|" + target);
    return onlyLogo.empty() ? copySucceeds : logo == onlyLogo;
  }
};

}  // namespace TestSupport
