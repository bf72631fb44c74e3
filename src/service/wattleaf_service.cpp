#include "service/wattleaf_service.h"

#include <windows.h>

#include <wtsapi32.h>

#include <cwchar>
#include <memory>
#include <string>

#include "collection/wattleaf_helper.h"
#include "logging/trace_logger.h"
#include "service/service_factory.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using Logging::LogManager;

constexpr std::size_t kLongestNameChars = 64;

/// The host's opaque session handle points to one of these.
struct SessionRecord {
  std::unique_ptr<wchar_t[]> name;
};

/// A copy of `name`. An empty text for a null name and for one above the limit, which are errors of
/// the caller: nothing is truncated.
std::unique_ptr<wchar_t[]> CopySessionName(const wchar_t* name) {
  const std::size_t length = name == nullptr ? 0 : wcsnlen(name, kLongestNameChars);
  auto copy = std::make_unique<wchar_t[]>(length + 1);
  const bool fits = length < kLongestNameChars || name[length] == L'\0';
  if (fits && length > 0) std::char_traits<wchar_t>::copy(copy.get(), name, length);
  return copy;
}

}  // namespace

int WattleafService::StartSession(wchar_t* name, void** handle) {
  if (handle != nullptr) {
    auto record = std::make_unique<SessionRecord>();
    record->name = CopySessionName(name);
    *handle = record.release();
  }
  LogManager::GetLogger()->LogInfo(L"WattleafService::StartSession");
  return 0;
}

int WattleafService::EndSession(void** handle) {
  if (handle != nullptr && *handle != nullptr) {
    // Kept on purpose: the host's variable is not cleared and holds a dangling pointer.
    const std::unique_ptr<SessionRecord> record(static_cast<SessionRecord*>(*handle));
  }
  LogManager::GetLogger()->LogInfo(L"WattleafService::EndSession");
  return 0;
}

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

extern "C" Zq::Gantry::Server::Services::ZQService* ZQCreateService() {
  return new Zq::Gantry::Server::Services::Wattleaf::WattleafService();
}
