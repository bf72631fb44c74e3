#pragma once

#include <windows.h>

#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "fault_points.h"
#include "platform/win32/owners.h"
#include "service/zq_service.h"

namespace Faults {

/// The instant of all passes, in seconds since 1970: 2026-03-30 10:00 UTC.
inline constexpr long long kNow = 1774864800;

/// The library's objects with the steps of a pass exported.
inline constexpr wchar_t kTestedLibrary[] = L"WattleafServiceSteps.dll";
inline constexpr wchar_t kShippedLibrary[] = L"WattleafService.dll";

/// The library beside the program, loaded and with counted calls; the destructor frees it. The
/// worker is never started, since it would keep the library loaded: the operations of a pass are
/// called directly, by their exported names. They never sleep, and the time is kNow.
class LoadedLibrary {
 public:
  using Replacements = std::map<std::string, void*>;

  explicit LoadedLibrary(const Replacements& replacements);
  LoadedLibrary(const LoadedLibrary&) = delete;
  LoadedLibrary& operator=(const LoadedLibrary&) = delete;
  ~LoadedLibrary();

  [[nodiscard]] FaultPoints& Points() { return *points_; }
  [[nodiscard]] Zq::Gantry::Server::Services::ZQService& Service() { return *service_; }

  /// An exported function by its decorated name. Throws std::runtime_error if there is none.
  template <typename Function>
  [[nodiscard]] Function* Export(const char* name) const {
    return reinterpret_cast<Function*>(FindExport(name));
  }

  /// Calls an operation without arguments of the helper, WattleafHelper::<name>().
  template <typename Result>
  Result CallHelper(const std::string& name) {
    const std::string scope = "_ZN2Zq6Gantry6Server8Services8Wattleaf14WattleafHelper";
    const auto instance = Export<void*()>((scope + "8InstanceEv").c_str());
    const auto function =
        Export<Result(void*)>((scope + std::to_string(name.size()) + name + "Ev").c_str());
    return function(instance());
  }

  /// The status and the text of a command, such as "0: [...]".
  [[nodiscard]] std::string RunCommand(unsigned int command, const std::wstring& input);

 private:
  [[nodiscard]] void* FindExport(const char* name) const;

  std::unique_ptr<FaultPoints> points_;  // outlives the library, which calls its code to the end
  Zq::Gantry::Platform::UniqueModule library_;
  std::unique_ptr<Zq::Gantry::Server::Services::ZQService> service_;
};

/// Collects the lines of the log while it exists.
class LogLines {
 public:
  LogLines();
  LogLines(const LogLines&) = delete;
  LogLines& operator=(const LogLines&) = delete;
  ~LogLines();

  /// The lines since the last call.
  [[nodiscard]] std::vector<std::string> Take();

 private:
  std::mutex lock_;
  std::vector<std::string> lines_;
};

}  // namespace Faults
