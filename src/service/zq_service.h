#pragma once

// The binary contract with the host, which calls through the table of virtual operations. This
// header only names standard types and defines none, so that a check can lay out the table without
// a standard library (tests/contract).

#include <functional>

namespace Zq::Gantry::Security {
struct RequestConfiguration;
}

// What the library does to the process of its host.
//
// startup_task
// - The library stays loaded from then on until the process ends; FreeLibrary has no effect.
// - One thread of the lowest priority begins its work after 90 seconds. It loads the collector
//   library, which the system looks for in the program's directory first and which may run threads
//   of its own, and makes a pass each day.
// - startup_task throws std::system_error if the thread cannot be made.
//
// A pass
// - The current directory of the process becomes the data folder and stays there.
// - A child process runs: the command interpreter with POWERCFG. While it runs, the environment
//   variable NoDefaultCurrentDirectoryInExePath is 1; then its old value is restored.
// - Up to two lines go to standard output, beside what the tool prints there. Before the first
//   pass, standard error gets a line for each packaged application whose folder cannot be searched
//   for a logo.
// - Commands 1, 3, 4, 5 and 6 wait for the part of the pass that updates the ledger.
// - If the tool ends with a negative status, the process ends (std::terminate).
//
// Command 7, the first time
// - The calling thread joins COM's multithreaded apartment and leaves it again. It leaves even
//   if it could not join: on a thread of a single-threaded apartment this undoes one of the host's
//   own CoInitialize calls. Such a host sends command 7 from another thread, or joins COM again. If
//   COM cannot make the WMI locator, the thread stays a member.
// - CoInitializeSecurity is called with default authentication and impersonation; it has no effect
//   if the process has called it before. The worker does the same.
//
// The end
// - When the process ends, the collector is abandoned: neither StopCollecting nor its destructor is
//   called, and its threads have been killed before.
// - If the library is freed and startup_task was never called, it is unloaded.

namespace Zq::Gantry::Server::Services {

/// The interface of every service plug-in of the host. The order of the operations is the contract.
class ZQService {
 public:
  virtual ~ZQService() = default;

  /// Makes a session and stores its handle in `*handle`, unless `handle` is null. The session
  /// copies `name`; a null name and one of more than 64 characters count as empty. Always returns
  /// 0.
  virtual int StartSession(wchar_t* name, void** handle) = 0;
  /// Frees the session of `*handle`, unless either pointer is null. `*handle` is not cleared.
  /// Always returns 0.
  virtual int EndSession(void** handle) = 0;
  /// Runs one numbered command. `session` and `configuration` are not used, and `callback` is never
  /// called. `input` must not be null, even for a command that does not read it. Returns 0 and a
  /// text in `*output`, which the caller gives back through FreeResult; or 0x20000001 for an
  /// unknown number, 0x20000002 for a command without a result, with `*output` untouched. Any
  /// thread may call, also at the same time.
  virtual int ExecuteCommand(void* session, unsigned int command, wchar_t* input, wchar_t** output,
                             std::function<void(wchar_t*)> callback,
                             Security::RequestConfiguration* configuration) = 0;
  /// Frees a text of ExecuteCommand (C heap); null does nothing.
  virtual void FreeResult(void* buffer);

  /// Called once, after the service was made.
  virtual void startup_task() {}
  /// The host's events. An implementation may ignore each of them.
  virtual void power_event_task([[maybe_unused]] unsigned long event) {}
  virtual void extra_task() {}
  /// Whether the host may send commands; always true here.
  virtual bool query_ready() { return true; }
  virtual void session_change_task([[maybe_unused]] unsigned long event,
                                   [[maybe_unused]] void* data) {}
  virtual void control_code_task([[maybe_unused]] unsigned long code) {}
};

}  // namespace Zq::Gantry::Server::Services
