#pragma once

#include "service/zq_service.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The one concrete service. Holds nothing: all state lives in WattleafHelper.
class WattleafService : public ZQService {
 public:
  int StartSession(wchar_t* name, void** handle) override;
  int EndSession(void** handle) override;
  int ExecuteCommand(void* session, unsigned int command, wchar_t* input, wchar_t** output,
                     std::function<void(wchar_t*)> callback,
                     Security::RequestConfiguration* configuration) override;
  /// Starts the worker; the moment at which WattleafHelper is normally made.
  void startup_task() override;
  void power_event_task(unsigned long event) override;
  /// Logs logons, unlocks, logoffs and locks (WTS_SESSION_*); collection goes on.
  void session_change_task(unsigned long event, void* data) override;
  void control_code_task(unsigned long code) override;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
