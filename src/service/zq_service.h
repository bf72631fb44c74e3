#pragma once

// The binary contract with the host, which calls through the table of virtual operations. Standard
// types are only named here, so that the table can be checked without a standard library.

#include <functional>

namespace Zq::Gantry::Security {
struct RequestConfiguration;
}

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
