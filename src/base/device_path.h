#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The device path behind a drive such as "C:" (QueryDosDeviceA); empty where it has none.
std::string QueryDevicePath(const std::string& drive);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
