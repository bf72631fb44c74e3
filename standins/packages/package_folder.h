#pragma once

#include <optional>
#include <string>
#include <vector>

#include "package_script.h"

// Part of the stand-in for the package manager.
namespace Standin::Packages {

/// A package as the file "package.txt" in its folder describes it: UTF-8 lines of key=value.
///   name=     the name without version
///   shown=    the shown name
///   kind=     "app", "framework" or "system"
///   logo=     the package's own logo, below the folder; without it the address has an empty path
///   script=   words of package_script.h for the calls about this package
struct PackageFolder {
  std::wstring folder;  // absolute
  std::wstring name;
  std::wstring shownName;
  std::wstring logo;
  bool isFramework = false;
  bool isSystem = false;
  Script script;
};

/// The packages below `root` in the order of their folders' names; none if there is no such folder.
/// Each package's script is `script` with the words of its own added. An unknown line is reported
/// on standard error.
[[nodiscard]] std::vector<PackageFolder> ReadPackageFolders(const std::wstring& root,
                                                            const Script& script);

}  // namespace Standin::Packages
