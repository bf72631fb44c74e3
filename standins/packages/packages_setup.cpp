// Part of the simulated notebook: writes its packaged applications into a folder.
//   packages_setup FOLDER

#include <cstdio>
#include <exception>

#include "package_files.h"

int main(int count, char** arguments) {
  if (count != 2) {
    std::fputs("usage: packages_setup FOLDER\n", stderr);
    return 2;
  }
  try {
    for (const auto& app : Standin::kPackagedApps) {
      Standin::Packages::WritePackage(arguments[1], app);
    }
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "packages_setup: %s\n", failure.what());
    return 1;
  }
  return 0;
}
