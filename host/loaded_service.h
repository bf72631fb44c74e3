#pragma once

#include <windows.h>

#include <memory>
#include <string>

#include "answer.h"
#include "platform/win32/owners.h"
#include "service/zq_service.h"

namespace WattleafHost {

/// WattleafService.dll and its service object. Reached as the real host reaches it: through the
/// exported factory and the virtual operations, nothing else.
class LoadedService {
 public:
  /// Loads the library from this program's folder. Throws std::runtime_error where that fails.
  LoadedService();

  HMODULE Module() const { return module_.get(); }
  /// UTF-8.
  std::string LibraryPath() const;

  /// Starts the background work.
  void Start() { service_->startup_task(); }

  Answer Ask(unsigned int number, const std::string& input);

 private:
  // The order matters: the object goes before its code does.
  Zq::Gantry::Platform::UniqueModule module_;
  std::unique_ptr<Zq::Gantry::Server::Services::ZQService> service_;
};

}  // namespace WattleafHost
