#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "service/zq_service.h"

namespace Scenario {

/// The library, found beside the program, and its service: through the exported factory only.
class ServiceSession {
 public:
  /// Throws std::runtime_error where the library does not load or makes no service.
  ServiceSession();

  HMODULE Library() const { return library_; }
  void Start() { service_->startup_task(); }
  /// The text of a command in UTF-8; nothing where there is none. Throws
  /// std::runtime_error at any other status than these two.
  std::optional<std::string> TryAsk(unsigned int command, const std::string& input);
  /// The same for a command that must have a text and needs no input.
  std::string Ask(unsigned int command);

 private:
  HMODULE library_;  // stays loaded: its worker sleeps until the process ends
  std::unique_ptr<Zq::Gantry::Server::Services::ZQService> service_;
};

}  // namespace Scenario
