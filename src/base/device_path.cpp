#include "base/device_path.h"

#include <windows.h>

#include <array>

namespace Zq::Gantry::Server::Services::Wattleaf {

std::string QueryDevicePath(const std::string& drive) {
  std::array<char, 1024> buffer{};
  const auto capacity = static_cast<DWORD>(buffer.size());
  if (QueryDosDeviceA(drive.c_str(), buffer.data(), capacity) == 0) return {};
  buffer.back() = '\0';
  return buffer.data();  // the first of several texts
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
