#include "serve/loaded_service.h"

#include <stdexcept>

#include "base/utf8_text.h"
#include "command_line/places.h"
#include "serve/unique_result.h"
#include "service/service_factory.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Platform::UniqueModule;
using Zq::Gantry::Server::Services::kServiceFactoryName;
using Zq::Gantry::Server::Services::kServiceLibraryName;
using Zq::Gantry::Server::Services::ServiceFactory;
using Zq::Gantry::Server::Services::ZQService;
using Zq::Gantry::Server::Services::Wattleaf::FromUtf8;
using Zq::Gantry::Server::Services::Wattleaf::kResultHandedOver;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

std::runtime_error SystemFailure(const std::string& what, const std::wstring& path) {
  const DWORD code = GetLastError();
  return std::runtime_error(what + " " + ToUtf8(path) + " (Windows error " + std::to_string(code) +
                            ")");
}

UniqueModule LoadBesideProgram() {
  const std::wstring path = ProgramFolder() + L"\\" + kServiceLibraryName;
  // The flag searches the library's own folder first, where Logging.dll is.
  UniqueModule module(
      LoadLibraryExW(path.c_str(), /*reserved=*/nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
  if (!module) throw SystemFailure("cannot load", path);
  return module;
}

ZQService* CreateService(HMODULE module) {
  // Through the generic function pointer type: compilers warn of a direct cast from FARPROC.
  const auto found = reinterpret_cast<void (*)()>(GetProcAddress(module, kServiceFactoryName));
  if (found == nullptr) throw SystemFailure("no factory ZQCreateService in", kServiceLibraryName);
  ZQService* service = reinterpret_cast<ServiceFactory*>(found)();
  if (service == nullptr) throw std::runtime_error("ZQCreateService made no service");
  return service;
}

}  // namespace

LoadedService::LoadedService() : module_(LoadBesideProgram()), service_(CreateService(Module())) {}

std::string LoadedService::LibraryPath() const { return ToUtf8(ModulePath(Module())); }

Answer LoadedService::Run(unsigned int number, const std::string& input) {
  std::wstring request = FromUtf8(input);
  wchar_t* output = nullptr;
  const int status = service_->ExecuteCommand(/*session=*/nullptr, number, request.data(), &output,
                                              /*callback=*/{}, /*configuration=*/nullptr);
  const UniqueResult result(output, FreeResult{service_.get()});
  std::string text;
  if (status == kResultHandedOver && result) text = ResultToUtf8(number, result.get());
  return MakeAnswer(number, status, std::move(text));
}

}  // namespace WattleafHost
