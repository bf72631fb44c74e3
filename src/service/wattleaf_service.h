#pragma once

#include "service/zq_service.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The one concrete service. It has no state of its own: all state is in WattleafHelper, which
/// outlives the service object. The operations may be called on any thread, and at the same time.
class WattleafService : public ZQService {
 public:
  int StartSession(wchar_t* name, void** handle) override;
  int EndSession(void** handle) override;
  /// Returns a status of service/command_table.h.
  int ExecuteCommand(void* session, unsigned int command, wchar_t* input, wchar_t** output,
                     std::function<void(wchar_t*)> callback,
                     Security::RequestConfiguration* configuration) override;
  /// Starts the worker. This is normally the first use of WattleafHelper, which makes it.
  void startup_task() override;
  /// Does nothing.
  void power_event_task(unsigned long event) override;
  /// Logs logons, unlocks, logoffs and locks (WTS_SESSION_*); collection continues.
  void session_change_task(unsigned long event, void* data) override;
  /// Does nothing.
  void control_code_task(unsigned long code) override;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
