#include "package_folder.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>

namespace Standin::Packages {

namespace {

std::wstring Wide(const std::string& text) {
  const int length = static_cast<int>(text.size());
  std::wstring wide(text.size(), L'\0');
  const int written = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), length);
  wide.resize(static_cast<std::size_t>(written));
  return wide;
}

bool TakeLine(const std::string& key, const std::string& value, PackageFolder& package) {
  if (key == "name") {
    package.name = Wide(value);
  } else if (key == "shown") {
    package.shownName = Wide(value);
  } else if (key == "logo") {
    package.logo = Wide(value);
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
  std::error_code noRoot;
  std::vector<PackageFolder> packages;
  for (const auto& entry : std::filesystem::directory_iterator(root, noRoot)) {
    if (auto package = TryReadPackage(entry.path(), script))
      packages.push_back(std::move(*package));
  }
  std::sort(packages.begin(), packages.end(),
            [](const auto& a, const auto& b) { return a.folder < b.folder; });
  return packages;
}

}  // namespace Standin::Packages
