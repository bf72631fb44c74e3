#include "reports/real_tool.h"

#include <windows.h>

namespace TestSupport {

namespace {

constexpr const wchar_t* kSettings[] = {L"SEED", L"DAYS", L"NOW", L"STATUS", L"OUTPUT", L"TRUTH"};

void Set(const std::wstring& name, const wchar_t* value) {
  SetEnvironmentVariableW((L"WATTLEAF_POWERCFG_" + name).c_str(), value);
}

void ForgetSettings() {
  for (const wchar_t* name : kSettings) Set(name, nullptr);
}

std::wstring SearchPath() {
  std::wstring path(32 * 1024, L'\0');
  path.resize(GetEnvironmentVariableW(L"PATH", path.data(), static_cast<DWORD>(path.size())));
  return path;
}

/// Where the test program lies, and the stand-in beside it.
std::wstring ProgramFolder() {
  std::wstring path(MAX_PATH, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), MAX_PATH));
  return path.substr(0, path.find_last_of(L'\\'));
}

}  // namespace

std::wstring CurrentDirectory() {
  std::wstring path(32 * 1024, L'\0');
  path.resize(GetCurrentDirectoryW(static_cast<DWORD>(path.size()), path.data()));
  return path;
}

RealTool::RealTool() : directoryBefore_(CurrentDirectory()), pathBefore_(SearchPath()) {
  ForgetSettings();
  SetEnvironmentVariableW(L"PATH", (ProgramFolder() + L";" + pathBefore_).c_str());
}

RealTool::~RealTool() {
  ForgetSettings();
  SetEnvironmentVariableW(L"PATH", pathBefore_.c_str());
  // A current directory cannot be removed.
  SetCurrentDirectoryW(directoryBefore_.c_str());
}

void RealTool::Tell(const std::wstring& name, const std::wstring& value) {
  Set(name, value.c_str());
}

void RealTool::Hide() { SetEnvironmentVariableW(L"PATH", folder_.File(L"nothing").c_str()); }

}  // namespace TestSupport
