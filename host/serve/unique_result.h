#pragma once

#include <memory>

#include "service/zq_service.h"

namespace WattleafHost {

/// Returns a command's text to the service that allocated it.
struct FreeResult {
  Zq::Gantry::Server::Services::ZQService* service;
  void operator()(wchar_t* text) const { service->FreeResult(text); }
};

/// The owner of a command's text. The service must exist as long as the owner.
using UniqueResult = std::unique_ptr<wchar_t, FreeResult>;

}  // namespace WattleafHost
