#include "host/notebook/host_process.h"

#include <windows.h>

#include <array>
#include <thread>

#include <gtest/gtest.h>

#include "platform/win32/owners.h"

namespace TestSupport {

namespace {

using Zq::Gantry::Platform::UniqueFileHandle;
using Zq::Gantry::Platform::UniqueHandle;

constexpr DWORD kLongestRunMilliseconds = 110'000;

struct Pipe {
  UniqueHandle read;
  UniqueHandle write;
};

/// The writing end can be inherited, the reading end cannot.
Pipe MakePipe() {
  Pipe pipe;
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  if (!CreatePipe(pipe.read.out(), pipe.write.out(), &inherited, 0)) ADD_FAILURE() << "no pipe";
  SetHandleInformation(pipe.read.get(), HANDLE_FLAG_INHERIT, 0);
  return pipe;
}

void ReadToEnd(HANDLE pipe, std::string& text) {
  std::array<char, 4096> buffer{};
  DWORD count = 0;
  while (ReadFile(pipe, buffer.data(), static_cast<DWORD>(buffer.size()), &count, nullptr) &&
         count > 0) {
    text.append(buffer.data(), count);
  }
}

UniqueFileHandle OpenEmptyInput() {
  SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
  return UniqueFileHandle(CreateFileW(L"NUL", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      &inherited, OPEN_EXISTING, 0, nullptr));
}

std::wstring CommandLine(const std::wstring& program, const std::vector<std::wstring>& arguments) {
  std::wstring line = L"\"" + program + L"\"";
  for (const std::wstring& argument : arguments) line += L" \"" + argument + L"\"";
  return line;
}

UniqueHandle Start(std::wstring commandLine, HANDLE input, HANDLE output, HANDLE errors) {
  STARTUPINFOW startup{};
  startup.cb = sizeof(startup);
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = input;
  startup.hStdOutput = output;
  startup.hStdError = errors;
  PROCESS_INFORMATION process{};
  if (!CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, /*inheritHandles=*/TRUE,
                      CREATE_NO_WINDOW, nullptr, nullptr, &startup, &process)) {
    ADD_FAILURE() << "cannot start the program, Windows error " << GetLastError();
    return {};
  }
  const UniqueHandle thread(process.hThread);
  return UniqueHandle(process.hProcess);
}

void WaitForEnd(HANDLE process, HostRun& run) {
  if (WaitForSingleObject(process, kLongestRunMilliseconds) != WAIT_OBJECT_0) {
    ADD_FAILURE() << "the program does not end";
    TerminateProcess(process, 255);
    WaitForSingleObject(process, INFINITE);
  }
  GetExitCodeProcess(process, &run.exitStatus);
}

}  // namespace

HostRun RunProgram(const std::wstring& program, const std::vector<std::wstring>& arguments) {
  HostRun run;
  Pipe output = MakePipe();
  Pipe errors = MakePipe();
  const UniqueFileHandle input = OpenEmptyInput();
  const UniqueHandle process =
      Start(CommandLine(program, arguments), input.get(), output.write.get(), errors.write.get());
  // Our copies are closed, so that the pipes end when the program has ended.
  output.write.reset();
  errors.write.reset();
  if (!process) return run;

  std::thread readErrors(ReadToEnd, errors.read.get(), std::ref(run.errors));
  std::thread readOutput(ReadToEnd, output.read.get(), std::ref(run.output));
  WaitForEnd(process.get(), run);
  readErrors.join();
  readOutput.join();
  return run;
}

HostRun RunHost(const std::vector<std::wstring>& arguments) {
  std::array<wchar_t, MAX_PATH> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size() - 1));
  const std::wstring self = path.data();
  return RunProgram(self.substr(0, self.find_last_of(L'\\')) + L"\\wattleaf_host.exe", arguments);
}

std::wstring InstalledHost(const std::wstring& folder) {
  std::array<wchar_t, MAX_PATH> programs{};
  GetEnvironmentVariableW(L"ProgramFiles", programs.data(), static_cast<DWORD>(programs.size()));
  return std::wstring(programs.data()) + L"\\" + folder + L"\\wattleaf_host.exe";
}

}  // namespace TestSupport
