#pragma once

#include <string>
#include <vector>

#include "doctor/machine_facts.h"

namespace WattleafHost {

/// What is at a path, and whether this user may write there; nothing is written to find out.
[[nodiscard]] PlaceFacts ReadPlace(const std::wstring& path);

/// The accounts that a folder's access list lets add files, as "NT AUTHORITY\SYSTEM". Empty if the
/// list cannot be read.
[[nodiscard]] std::vector<std::string> ReadWriters(const std::wstring& folder);

}  // namespace WattleafHost
