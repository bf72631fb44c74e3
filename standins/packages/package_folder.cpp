#include "package_folder.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "base/utf8_text.h"

namespace Standin::Packages {

namespace {

using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;

/// False for an unknown line.
bool TakeLine(const std::string& key, const std::string& value, PackageFolder& package) {
  if (key == "name") {
    package.name = FromUtf8(value);
  } else if (key == "shown") {
    package.shownName = FromUtf8(value);
  } else if (key == "logo") {
    package.logo = FromUtf8(value);
  } else if (key == "kind") {
    package.isFramework = value == "framework";
    package.isSystem = value == "system";
  } else if (key == "script") {
    return package.script.Add(value);
  } else {
    return false;
  }
  return true;
}

std::optional<PackageFolder> TryReadPackage(const std::filesystem::path& folder,
                                            const Script& script) {
  std::ifstream lines(folder / L"package.txt");
  if (!lines) return std::nullopt;
  PackageFolder package;
  package.folder = folder.wstring();
  package.script = script;
  for (std::string line; std::getline(lines, line);) {
    const auto sign = std::min(line.find('='), line.size());
    const std::string value = sign < line.size() ? line.substr(sign + 1) : std::string();
    if (!TakeLine(line.substr(0, sign), value, package)) {
      std::fprintf(stderr, "package stand-in: unknown line %s\n", line.c_str());
    }
  }
  return package;
}

}  // namespace

std::vector<PackageFolder> ReadPackageFolders(const std::wstring& root, const Script& script) {
  std::error_code ignored;  // no such folder: no packages
  std::vector<PackageFolder> packages;
  for (const auto& entry : std::filesystem::directory_iterator(root, ignored)) {
    if (auto package = TryReadPackage(entry.path(), script))
      packages.push_back(std::move(*package));
  }
  std::sort(packages.begin(), packages.end(),
            [](const auto& a, const auto& b) { return a.folder < b.folder; });
  return packages;
}

}  // namespace Standin::Packages
