#include "snapshot/machine.h"

#include <windows.h>

#include <array>

#include "base/utf8_text.h"

namespace WattleafHost {

using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

std::string ComputerName() {
  std::array<wchar_t, 256> name{};
  auto length = static_cast<DWORD>(name.size());
  if (!GetComputerNameExW(ComputerNamePhysicalDnsHostname, name.data(), &length)) return {};
  return ToUtf8({name.data(), length});
}

std::string ZoneName() {
  DYNAMIC_TIME_ZONE_INFORMATION zone{};
  if (GetDynamicTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID) return {};
  return ToUtf8(zone.TimeZoneKeyName);
}

}  // namespace WattleafHost
