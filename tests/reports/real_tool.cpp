#include "reports/real_tool.h"

#include <windows.h>

namespace TestSupport {

namespace {

constexpr const wchar_t* kSettings[] = {L"SEED", L"DAYS", L"NOW", L"STATUS", L"OUTPUT", L"TRUTH"};

void SetVariable(const std::wstring& name, const wchar_t* value) {
  SetEnvironmentVariableW((L"WATTLEAF_POWERCFG_" + name).c_str(), value);
}

void ClearSettings() {
  for (const wchar_t* name : kSettings) SetVariable(name, nullptr);
}

std::wstring SearchPath() {
  std::wstring path(32 * 1024, L'\0');
  path.resize(GetEnvironmentVariableW(L"PATH", path.data(), static_cast<DWORD>(path.size())));
  return path;
}

/// The folder of the test program and of the stand-in.
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
  ClearSettings();
  SetEnvironmentVariableW(L"PATH", (ProgramFolder() + L";" + pathBefore_).c_str());
}

RealTool::~RealTool() {
  ClearSettings();
  SetEnvironmentVariableW(L"PATH", pathBefore_.c_str());
  // The current directory of a process cannot be removed.
  SetCurrentDirectoryW(directoryBefore_.c_str());
}

void RealTool::Set(const std::wstring& name, const std::wstring& value) {
  SetVariable(name, value.c_str());
}

void RealTool::Hide() { SetEnvironmentVariableW(L"PATH", folder_.File(L"nothing").c_str()); }

}  // namespace TestSupport
