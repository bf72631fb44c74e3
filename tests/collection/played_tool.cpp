#include "collection/played_tool.h"

#include <windows.h>

#include <mutex>

namespace TestSupport {

namespace {

struct State {
  std::vector<std::string> calls;
  std::function<void()> during;
  int status = 0;
  BOOL entered = TRUE;
};

std::mutex lock;
State state;

int __cdecl PlayedSystem(const char* commandLine) {
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

BOOL WINAPI PlayedSetCurrentDirectory(const wchar_t* path) {
  const std::wstring wide = path;
  std::string narrow;
  for (const wchar_t c : wide) narrow += static_cast<char>(c);
  const std::lock_guard guard(lock);
  state.calls.push_back("enter " + narrow);
  return state.entered;
}

}  // namespace

PlayedTool::PlayedTool()
    : patchedSystem_("system", &PlayedSystem),
      patchedDirectory_("SetCurrentDirectoryW", &PlayedSetCurrentDirectory) {
  const std::lock_guard guard(lock);
  state = {};
}

PlayedTool::~PlayedTool() {
  const std::lock_guard guard(lock);
  state = {};
}

void PlayedTool::EndWith(int status) {
  const std::lock_guard guard(lock);
  state.status = status;
}

void PlayedTool::DuringRun(std::function<void()> action) {
  const std::lock_guard guard(lock);
  state.during = std::move(action);
}

void PlayedTool::RefuseDirectories() {
  const std::lock_guard guard(lock);
  state.entered = FALSE;
}

std::vector<std::string> PlayedTool::Calls() const {
  const std::lock_guard guard(lock);
  return state.calls;
}

}  // namespace TestSupport
