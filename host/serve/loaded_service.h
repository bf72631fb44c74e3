#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "answers/answer.h"
#include "platform/win32/owners.h"
#include "service/zq_service.h"

namespace WattleafHost {

/// WattleafService.dll and its service object, reached as the real host reaches them: through the
/// exported factory and the virtual operations only.
class LoadedService {
 public:
  /// Loads the library from this program's folder. Throws std::runtime_error on failure.
  LoadedService();

  [[nodiscard]] HMODULE Module() const { return module_.get(); }
  /// UTF-8.
  [[nodiscard]] std::string LibraryPath() const;

  /// Starts the background work.
  void Start() { service_->startup_task(); }

  /// Runs one command; `input` is UTF-8.
  [[nodiscard]] Answer Run(unsigned int number, const std::string& input);

 private:
  // The order matters: the object is destroyed before its code is unloaded.
  Zq::Gantry::Platform::UniqueModule module_;
  std::unique_ptr<Zq::Gantry::Server::Services::ZQService> service_;
};

}  // namespace WattleafHost
