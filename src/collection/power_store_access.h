#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "base/json_document.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Reads the 30-day store, holding the lock while it is open and not longer. Null for a store that
/// is missing, no plain file, too large or no JSON.
std::unique_ptr<GenericDocument> LoadPowerStore(const std::wstring& path, std::mutex& storeMutex);

/// Writes it under the same lock. A store that cannot be opened stays as it is, and nobody is told.
void SavePowerStore(const std::wstring& path, const GenericDocument& store, std::mutex& storeMutex);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
