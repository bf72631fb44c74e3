#pragma once

#include <windows.h>

#include <rpc.h>

#include <string>
#include <vector>

#include "import_patch.h"
#include "support/log_capture.h"
#include "support/scoped_variable.h"

namespace TestSupport {

/// Fakes RpcServerInqCallAttributesW while this object exists. Every test of code that expands
/// paths needs one: some systems that the tests run on do not implement the call and end the
/// process, and no test thread serves a remote procedure call. One at a time.
class FakeRpcQuery {
 public:
  /// The thread serves no call: the query fails with `status`.
  explicit FakeRpcQuery(RPC_STATUS status = RPC_S_NO_CALL_ACTIVE);
  /// The thread serves a call of the process `client`.
  [[nodiscard]] static FakeRpcQuery ServingClient(DWORD client) {
    return FakeRpcQuery(RPC_S_OK, client);
  }
  FakeRpcQuery(const FakeRpcQuery&) = delete;
  FakeRpcQuery& operator=(const FakeRpcQuery&) = delete;
  ~FakeRpcQuery();

  struct Question {
    RPC_BINDING_HANDLE binding;
    std::vector<unsigned char> attributes;  ///< the 120 bytes as the caller filled them
  };
  [[nodiscard]] const std::vector<Question>& Questions() const { return questions_; }

 private:
  FakeRpcQuery(RPC_STATUS status, DWORD client);
  static RPC_STATUS RPC_ENTRY Answer(RPC_BINDING_HANDLE binding, void* attributes);

  RPC_STATUS status_;
  DWORD client_ = 0;
  std::vector<Question> questions_;
  Standin::ImportPatch patch_;
};

/// Puts the allowed roots in fixed places, independent of the machine.
struct FixedRoots {
  ScopedVariable windows{L"windir", L"C:\\Windows"};
  ScopedVariable programs86{L"ProgramFiles(x86)", L"C:\\Program Files (x86)"};
  ScopedVariable programs{L"ProgramFiles", L"C:\\Program Files"};
};

/// The text that the expansion of a path logs if `function` failed with `error`.
[[nodiscard]] std::wstring ExpansionFailure(const std::wstring& function, int error);

/// The records of `log` that are warnings or errors.
[[nodiscard]] std::vector<LogRecord> WarningsAndErrors(const LogCapture& log);

}  // namespace TestSupport
