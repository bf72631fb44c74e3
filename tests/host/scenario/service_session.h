#pragma once

#include <windows.h>

#include <memory>
#include <optional>
#include <string>

#include "service/zq_service.h"

namespace Scenario {

/// The library beside the program and its service, reached through the exported factory only.
class ServiceSession {
 public:
  /// Throws std::runtime_error if the library does not load or has no factory.
  ServiceSession();

  [[nodiscard]] HMODULE Library() const { return library_; }
  [[nodiscard]] Zq::Gantry::Server::Services::ZQService& Service() { return *service_; }
  void Start() { service_->startup_task(); }
  /// Runs a command and returns its text in UTF-8; nothing if the status is kNoResult. Throws
  /// std::runtime_error if it is neither that nor 0.
  [[nodiscard]] std::optional<std::string> TryRun(unsigned int command, const std::string& input);
  /// The same for a command that must have a text and needs no input.
  [[nodiscard]] std::string Run(unsigned int command);

 private:
  // Kept on purpose: the worker sleeps in the library until the process ends.
  HMODULE library_;
  std::unique_ptr<Zq::Gantry::Server::Services::ZQService> service_;
};

}  // namespace Scenario
