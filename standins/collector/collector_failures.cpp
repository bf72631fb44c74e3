// Stand-in: the record of the calls into the collector, and the exceptions that they throw on
// request.

#include "collector_failures.h"

#include <windows.h>

#include <stdexcept>

#include "environment.h"
#include "platform/win32/owners.h"

namespace Standin {

void RecordCall(const char* call) {
  const std::wstring path = ReadVariable(L"WATTLEAF_COLLECTOR_CALLS");
  if (path.empty()) return;
  const Zq::Gantry::Platform::UniqueFileHandle file(
      CreateFileW(path.c_str(), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                  /*security=*/nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, /*pattern=*/nullptr));
  const std::string line = std::string(call) + "\n";
  DWORD written = 0;
  WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written,
            /*overlapped=*/nullptr);
}

void EnterCall(const std::string& failure, const std::string& call) {
  RecordCall(call.c_str());
  if (failure == call + " standard") throw std::runtime_error(kSimulatedFailure);
  if (failure == call + " other") throw 7;
}

}  // namespace Standin
