#include "collection/power_store_access.h"

#include "base/plain_file.h"
#include "reports/power_budget.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::unique_ptr<GenericDocument> LoadPowerStore(const std::wstring& path, std::mutex& storeMutex) {
  const std::lock_guard lock(storeMutex);
  if (!IsKnownPlainFile(path)) return nullptr;
  return std::unique_ptr<GenericDocument>(
      LoadJsonDocument(path, kLargestPowerStoreBytes, kMostOpenStoreValues));
}

void SavePowerStore(const std::wstring& path, const GenericDocument& store,
                    std::mutex& storeMutex) {
  const std::lock_guard lock(storeMutex);
  static_cast<void>(SaveJsonDocument(path, store));
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
