#include "catalogue/sample_program.h"

#include <gtest/gtest.h>

#include <array>

namespace TestSupport {

using Zq::Gantry::Platform::UniqueIcon;
using Zq::Gantry::Platform::UniqueModule;

std::string SampleProgram(const std::string& name) {
  std::array<char, MAX_PATH + 1> path{};
  GetModuleFileNameA(nullptr, path.data(), static_cast<DWORD>(path.size()));
  const std::string own = path.data();
  return own.substr(0, own.rfind('\\')) + "\\catalogue-samples\\" + name;
}

std::string Narrow(const std::wstring& path) {
  std::string text;
  for (const wchar_t c : path) text += static_cast<char>(c);
  return text;
}

UniqueIcon SampleIcon() {
  const UniqueModule program(
      LoadLibraryExA(SampleProgram("one.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE));
  UniqueIcon icon(static_cast<HICON>(
      LoadImageW(program.get(), MAKEINTRESOURCEW(1), IMAGE_ICON, 32, 32, LR_DEFAULTCOLOR)));
  EXPECT_TRUE(static_cast<bool>(icon)) << "no icon in one.exe";
  return icon;
}

}  // namespace TestSupport
