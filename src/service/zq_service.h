#pragma once

// The binary contract with the host, which calls through the table of virtual operations. Standard
// types are only named here, so that the table can be checked without a standard library.

#include <functional>

namespace Zq::Gantry::Security {
struct RequestConfiguration;
}

// What a host must know of its own process.
//
// startup_task
// - The library stays loaded from then on until the process ends; FreeLibrary has no effect.
// - One thread of the lowest priority begins its work after 90 seconds. It loads the collector
//   library, which the system looks for in the program's directory first and which may run threads
//   of its own, and makes a pass each day.
// - std::system_error leaves startup_task if the thread cannot be made.
//
// A pass
// - The current directory of the process becomes the data folder and stays there.
// - A child process runs: the command interpreter with POWERCFG. While it runs, the environment
//   variable NoDefaultCurrentDirectoryInExePath is 1; then it is put back as it was.
// - Up to two lines go to standard output, beside what the tool prints there. Before the first
//   pass, standard error gets a line for each packaged application whose logo cannot be looked for.
// - Commands 1, 3, 4, 5 and 6 wait for the part of the pass that updates the ledger.
// - If the tool ends with a negative status, the process ends (std::terminate).
//
// Command 7, the first time
// - The calling thread joins COM's multithreaded apartment and leaves it again. It leaves also if
//   it could not join: on a thread of a single-threaded apartment this takes away one of the host's
//   own CoInitialize calls. Such a host asks command 7 on another thread, or joins COM again.
// - CoInitializeSecurity is called with default authentication and impersonation; it has no effect
//   if the process has called it before. The worker does the same.
//
// The end
// - When the process ends, the collector is given up: neither StopCollecting nor its destructor is
//   called, and its threads have been killed before.
// - If the library is freed and startup_task was never called, it is unloaded.

namespace Zq::Gantry::Server::Services {

/// What every service plug-in of the host offers. The order of the operations is the contract.
class ZQService {
 public:
  virtual ~ZQService() = default;

  /// Makes a session and stores its handle in `*handle`. `name` counts up to 64 characters. Always
  /// 0.
  virtual int StartSession(wchar_t* name, void** handle) = 0;
  /// Frees the session behind `*handle`, which is left dead, not cleared. Always 0.
  virtual int EndSession(void** handle) = 0;
  /// Runs one numbered command. On status 0 `*output` holds a text that goes back through
  /// FreeResult.
  virtual int ExecuteCommand(void* session, unsigned int command, wchar_t* input, wchar_t** output,
                             std::function<void(wchar_t*)> callback,
                             Security::RequestConfiguration* configuration) = 0;
  /// Gives a result of ExecuteCommand back to the C heap; null does nothing.
  virtual void FreeResult(void* buffer);

  virtual void startup_task() {}
  virtual void power_event_task([[maybe_unused]] unsigned long event) {}
  virtual void extra_task() {}
  virtual bool query_ready() { return true; }
  virtual void session_change_task([[maybe_unused]] unsigned long event,
                                   [[maybe_unused]] void* data) {}
  virtual void control_code_task([[maybe_unused]] unsigned long code) {}
};

}  // namespace Zq::Gantry::Server::Services
