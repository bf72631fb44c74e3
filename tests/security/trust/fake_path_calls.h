#pragma once

#include <windows.h>

#include <rpc.h>

#include <optional>
#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

/// Fakes RpcServerInqCallAttributesW for as long as it lives. Every test of code that expands paths
/// needs one: the call is unimplemented on some systems that the tests run on and would end the
/// process there, and no test thread serves a procedure call.
class FakeRpcQuery {
 public:
  /// The thread serves nobody: the call fails with `status`.
  explicit FakeRpcQuery(RPC_STATUS status = RPC_S_NO_CALL_ACTIVE);
  /// The thread serves the process `client`.
  static FakeRpcQuery ServingClient(DWORD client) { return FakeRpcQuery(RPC_S_OK, client); }
  FakeRpcQuery(const FakeRpcQuery&) = delete;
  FakeRpcQuery& operator=(const FakeRpcQuery&) = delete;
  ~FakeRpcQuery();

  struct Question {
    RPC_BINDING_HANDLE binding;
    std::vector<unsigned char> attributes;  ///< the 120 bytes as they were handed in
  };
  const std::vector<Question>& Questions() const { return questions_; }

 private:
  FakeRpcQuery(RPC_STATUS status, DWORD client);
  static RPC_STATUS RPC_ENTRY Answer(RPC_BINDING_HANDLE binding, void* attributes);

  RPC_STATUS status_;
  DWORD client_ = 0;
  std::vector<Question> questions_;
  Standin::ImportPatch patch_;
};

/// One variable of this process's environment for a while; absent where `value` is null.
class ScopedVariable {
 public:
  ScopedVariable(std::wstring name, const wchar_t* value);
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable();

 private:
  std::wstring name_;
  std::optional<std::wstring> before_;
};

/// The allowed roots in fixed places, whatever the machine's.
struct FixedRoots {
  ScopedVariable windows{L"windir", L"C:\\Windows"};
  ScopedVariable programs86{L"ProgramFiles(x86)", L"C:\\Program Files (x86)"};
  ScopedVariable programs{L"ProgramFiles", L"C:\\Program Files"};
};

/// The warning that the expansion of a path writes when `function` failed with `error`.
std::wstring ExpansionFailure(const std::wstring& function, int error);

}  // namespace TestSupport
