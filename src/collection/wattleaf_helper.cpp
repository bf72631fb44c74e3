#include "collection/wattleaf_helper.h"

#include <array>
#include <system_error>

#include "collection/process_end.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// Directory of the process's executable, without trailing separator; empty if it has none.
std::wstring HostDirectory() {
  std::array<wchar_t, 260> path{};
  GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  path.back() = L'\0';
  const std::wstring full = path.data();
  const auto separator = full.find_last_of(L"\\/");
  return separator == std::wstring::npos ? std::wstring() : full.substr(0, separator);
}

bool TryDetach(std::thread& thread) {
  try {
    thread.detach();
    return true;
  } catch (const std::system_error&) {
    return false;
  }
}

/// Waits for the thread and deletes its object. A thread that cannot be joined is detached; one
/// that cannot be detached either is given up, since deleting a joinable thread ends the process.
void EndThread(std::unique_ptr<std::thread> thread) {
  try {
    thread->join();
  } catch (const std::system_error&) {
    if (!TryDetach(*thread) && thread->joinable()) static_cast<void>(thread.release());
  }
}

}  // namespace

WattleafHelper& WattleafHelper::Instance() {
  // The object is destroyed when the library is freed, and given up as it is when the process ends:
  // the other threads were killed at any point then, perhaps inside the collector's locks or within
  // a change of a field, and the collector's library has been cleaned up already.
  union Storage {
    Storage() : helper() {}
    Storage(const Storage&) = delete;
    Storage& operator=(const Storage&) = delete;
    ~Storage() {
      if (!IsProcessEnding()) helper.~WattleafHelper();
    }
    WattleafHelper helper;
  };
  static Storage storage;
  return storage.helper;
}

WattleafHelper::WattleafHelper() : hostDirectory(HostDirectory()) {}

WattleafHelper::~WattleafHelper() {
  running.store(false, std::memory_order_relaxed);
  if (worker != nullptr) EndThread(std::move(worker));
  try {
    StopCollection();
  } catch (...) {
    // Dropped: the library is being freed, and no caller could handle the failure.
  }
  UnloadCollector();
}

std::string WattleafHelper::GetDevicePath(std::string drive) {
  std::array<char, 1024> buffer{};
  const auto capacity = static_cast<DWORD>(buffer.size());
  if (QueryDosDeviceA(drive.c_str(), buffer.data(), capacity) == 0) return {};
  buffer.back() = '\0';
  return buffer.data();  // the first of several texts
}

bool WattleafHelper::IsDataChanged() { return dataChanged.load(std::memory_order_relaxed); }

bool WattleafHelper::IsDataAvailable() { return dataAvailable.load(std::memory_order_relaxed); }

}  // namespace Zq::Gantry::Server::Services::Wattleaf
