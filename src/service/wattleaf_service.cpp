#include "service/wattleaf_service.h"

#include <windows.h>
#include <wtsapi32.h>

#include "collection/wattleaf_helper.h"
#include "logging/trace_logger.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

using Logging::LogManager;

void WattleafService::startup_task() { WattleafHelper::Instance().StartProcessing(); }

void WattleafService::power_event_task(unsigned long) {}

void WattleafService::session_change_task(unsigned long event, void*) {
  switch (event) {
    case WTS_SESSION_LOGON:
    case WTS_SESSION_UNLOCK:
      LogManager::GetLogger()->LogInfo(L"Opening session\n");
      return;
    case WTS_SESSION_LOGOFF:
    case WTS_SESSION_LOCK:
      LogManager::GetLogger()->LogInfo(L"Locking or closing session\n");
      return;
    default:
      return;
  }
}

void WattleafService::control_code_task(unsigned long) {}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
