#include "loaded_library.h"

#include <time.h>

#include <stdexcept>

#include "base/utf8_text.h"
#include "logging_standin.h"
#include "serve/unique_result.h"
#include "simulated_calls.h"

namespace Faults {

namespace {

using Zq::Gantry::Server::Services::ZQService;
using Zq::Gantry::Server::Services::Wattleaf::ToUtf8;

void WINAPI NoSleep(DWORD) {}

__time64_t FixedTime(__time64_t* out) {
  if (out != nullptr) *out = kNow;
  return kNow;
}

LoadedLibrary::Replacements WithCommonOnes(const LoadedLibrary::Replacements& own) {
  LoadedLibrary::Replacements all = own;
  all.emplace("Sleep", reinterpret_cast<void*>(&NoSleep));
  all.emplace("_time64", reinterpret_cast<void*>(&FixedTime));
  for (const Standin::SimulatedCall& call : Standin::AllSimulatedCalls()) {
    all.emplace(call.name, reinterpret_cast<void*>(call.replacement));
  }
  return all;
}

}  // namespace

LoadedLibrary::LoadedLibrary(const Replacements& replacements)
    : library_(LoadLibraryW(kTestedLibrary)) {
  if (!library_) throw std::runtime_error("the library does not load");
  points_ = std::make_unique<FaultPoints>(library_.get(), WithCommonOnes(replacements));
  service_.reset(Export<ZQService*()>("ZQCreateService")());
}

LoadedLibrary::~LoadedLibrary() {
  service_.reset();
  library_.reset();
}

void* LoadedLibrary::FindExport(const char* name) const {
  void* found = reinterpret_cast<void*>(GetProcAddress(library_.get(), name));
  if (found == nullptr) throw std::runtime_error(std::string("not exported: ") + name);
  return found;
}

std::string LoadedLibrary::RunCommand(unsigned int command, const std::wstring& input) {
  std::wstring request = input;
  wchar_t* output = nullptr;
  const int status = service_->ExecuteCommand(/*session=*/nullptr, command, request.data(), &output,
                                              /*callback=*/{}, /*configuration=*/nullptr);
  const WattleafHost::UniqueResult result(output, WattleafHost::FreeResult{service_.get()});
  return std::to_string(status) + ":" + (output != nullptr ? ToUtf8(output) : std::string());
}

LogLines::LogLines() {
  Standin::SetLogSink(
      [](void* self, Standin::LogLevel level, const wchar_t*, const wchar_t* text) {
        static constexpr const char* kLevels[] = {"info", "warning", "error"};
        auto& log = *static_cast<LogLines*>(self);
        std::string line = std::string(kLevels[static_cast<int>(level)]) + " " + ToUtf8(text);
        while (!line.empty() && (line.back() == '\n' || line.back() == ' ')) line.pop_back();
        const std::lock_guard guard(log.lock_);
        log.lines_.push_back(std::move(line));
      },
      this);
}

LogLines::~LogLines() { Standin::SetLogSink(nullptr, nullptr); }

std::vector<std::string> LogLines::Take() {
  const std::lock_guard guard(lock_);
  return std::exchange(lines_, {});
}

}  // namespace Faults
