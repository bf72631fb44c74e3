#pragma once

#include <optional>
#include <string>
#include <vector>

#include "script.h"

// Part of the stand-in for the package manager.
namespace Standin::Packages {

/// A package as its folder tells it, in the file "package.txt": UTF-8 lines of key=value.
///   name=     the name without version
///   shown=    the shown name
///   kind=     "app", "framework" or "system"
///   logo=     the package's own logo, below the folder; without one its address has an empty path
///   script=   words of script.h for the calls about this package
struct PackageFolder {
  std::wstring folder;  // absolute
  std::wstring name;
  std::wstring shownName;
  std::wstring logo;
  bool isFramework = false;
  bool isSystem = false;
  Script script;
};

/// The packages below `root` in the order of their folders' names; each begins with `script`.
std::vector<PackageFolder> ReadPackageFolders(const std::wstring& root, const Script& script);

}  // namespace Standin::Packages
