#pragma once

#include "service/zq_service.h"
#include "wattleaf_export.h"

// How a host reaches the service: it loads the library and finds the factory by its name, which is
// not decorated, or it links the import library and calls the factory.
//
// The order of a host's calls:
//
//   LoadLibrary, GetProcAddress   the library loads only if it finds a Logging.dll
//                                 (logging/trace_logger.h)
//   ZQCreateService               makes the service
//   startup_task                  once; starts the worker, which nothing stops
//   StartSession, EndSession, ExecuteCommand, FreeResult, the host's events
//                                 in any order, on any thread, also at the same time
//   delete                        destroys the service; the worker goes on
//   FreeLibrary                   unloads the library only if startup_task was never called
//
// service/command_table.h has the numbers of the commands and the statuses, service/zq_service.h
// what the library does to the process of its host.

/// Makes a service with `new`. The caller owns it and destroys it with `delete`, which runs the
/// library's code: before FreeLibrary, and on any thread. Each call makes another object, but all
/// of them share one state, so a host that makes several calls startup_task on only one of them.
/// Reads no file and starts nothing. Throws std::bad_alloc.
extern "C" WATTLEAF_API Zq::Gantry::Server::Services::ZQService* ZQCreateService();

namespace Zq::Gantry::Server::Services {

/// The type of ZQCreateService, for GetProcAddress.
using ServiceFactory = ZQService*();
inline constexpr char kServiceFactoryName[] = "ZQCreateService";
inline constexpr wchar_t kServiceLibraryName[] = L"WattleafService.dll";

}  // namespace Zq::Gantry::Server::Services
