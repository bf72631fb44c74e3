#include "loaded_service.h"

#include <stdexcept>

#include "places.h"
#include "service/command_table.h"
#include "wide_text.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Server::Services::ZQService;

constexpr const wchar_t* kLibraryName = L"WattleafService.dll";
constexpr const char* kFactoryName = "ZQCreateService";

std::runtime_error SystemFailure(const std::string& what, const std::wstring& path) {
  const DWORD code = GetLastError();
  return std::runtime_error(what + " " + ToUtf8(path) + " (Windows error " + std::to_string(code) +
                            ")");
}

HMODULE LoadBesideProgram() {
  const std::wstring path = ProgramFolder() + L"\\" + kLibraryName;
  // With the library's own folder searched first, where Logging.dll lies too.
  const HMODULE module =
      LoadLibraryExW(path.c_str(), /*reserved=*/nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (module == nullptr) throw SystemFailure("cannot load", path);
  return module;
}

ZQService* CreateService(HMODULE module) {
  using Factory = ZQService*();
  // Through the general function pointer: the type is the contract's, not the look-up's.
  const auto found = reinterpret_cast<void (*)()>(GetProcAddress(module, kFactoryName));
  if (found == nullptr) throw SystemFailure("no factory ZQCreateService in", kLibraryName);
  ZQService* service = reinterpret_cast<Factory*>(found)();
  if (service == nullptr) throw std::runtime_error("ZQCreateService made no service");
  return service;
}

/// Gives a result back to the service that handed it over.
struct FreeResult {
  ZQService* service;
  void operator()(wchar_t* result) const { service->FreeResult(result); }
};
using UniqueResult = std::unique_ptr<wchar_t, FreeResult>;

/// The result of command 2 is decoded by the service, those of the others are widened bytes.
std::string TextOf(unsigned int number, const wchar_t* result) {
  using Zq::Gantry::Server::Services::Wattleaf::Command;
  const bool decoded = number == static_cast<unsigned int>(Command::kTopApplications);
  return decoded ? ToUtf8(result) : ResultToUtf8(result);
}

}  // namespace

LoadedService::LoadedService() : module_(LoadBesideProgram()), service_(CreateService(Module())) {}

std::string LoadedService::LibraryPath() const { return ToUtf8(ModulePath(Module())); }

Answer LoadedService::Ask(unsigned int number, const std::string& input) {
  std::wstring request = ToWide(input);
  wchar_t* output = nullptr;
  Answer answer{number, 0, {}};
  answer.status = service_->ExecuteCommand(/*session=*/nullptr, number, request.data(), &output,
                                           /*callback=*/{}, /*configuration=*/nullptr);
  const UniqueResult result(output, FreeResult{service_.get()});
  if (answer.status == 0 && result) answer.text = TextOf(number, result.get());
  return answer;
}

}  // namespace WattleafHost
