#include "platform/wmi/oem_string_marker.h"

#include <cwchar>

namespace Zq::Gantry::Server::Shared::WMI {

bool HoldsCarbonMarker(const WideDocument& document) {
  const auto result = document.FindMember(L"result");
  if (result == document.MemberEnd() || !result->value.IsArray()) return false;
  for (const WideValue& element : result->value.GetArray()) {
    if (!element.IsString()) return false;
    if (std::wcsstr(element.GetString(), L"CarbonSupport=1") != nullptr) return true;
  }
  return false;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
