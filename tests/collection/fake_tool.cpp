#include "collection/fake_tool.h"

#include <windows.h>

#include <mutex>

namespace TestSupport {

namespace {

struct ToolState {
  std::vector<std::string> calls;
  std::function<void()> during;
  int status = 0;
  BOOL entered = TRUE;
};

std::mutex lock;
ToolState state;

int __cdecl FakeSystem(const char* commandLine) {
  std::function<void()> during;
  {
    const std::lock_guard guard(lock);
    state.calls.push_back(std::string("run ") + commandLine);
    during = state.during;
  }
  if (during) during();
  const std::lock_guard guard(lock);
  return state.status;
}

BOOL WINAPI FakeSetCurrentDirectory(const wchar_t* path) {
  const std::wstring wide = path;
  std::string narrow;
  for (const wchar_t c : wide) narrow += static_cast<char>(c);
  const std::lock_guard guard(lock);
  state.calls.push_back("enter " + narrow);
  return state.entered;
}

}  // namespace

FakeTool::FakeTool()
    : patchedSystem_("system", &FakeSystem),
      patchedDirectory_("SetCurrentDirectoryW", &FakeSetCurrentDirectory) {
  const std::lock_guard guard(lock);
  state = {};
}

FakeTool::~FakeTool() {
  const std::lock_guard guard(lock);
  state = {};
}

void FakeTool::EndWith(int status) {
  const std::lock_guard guard(lock);
  state.status = status;
}

void FakeTool::DuringRun(std::function<void()> action) {
  const std::lock_guard guard(lock);
  state.during = std::move(action);
}

void FakeTool::RefuseDirectories() {
  const std::lock_guard guard(lock);
  state.entered = FALSE;
}

std::vector<std::string> FakeTool::Calls() const {
  const std::lock_guard guard(lock);
  return state.calls;
}

}  // namespace TestSupport
