// The client of the tests' local procedure call: calls once, and its exit status is the result.
//   caller_client ENDPOINT

#include "caller_probe.h"
#include "platform/win32/unique_resource.h"
#include "rpc_memory.h"

namespace {

using Zq::Gantry::Platform::UniqueResource;

constexpr int kNoServer = 100;

wchar_t kProtocol[] = L"ncalrpc";

struct RpcTextPolicy {
  using Type = RPC_WSTR;
  static Type Empty() { return nullptr; }
  static void Release(Type text) { RpcStringFreeW(&text); }
};

struct RpcBindingPolicy {
  using Type = RPC_BINDING_HANDLE;
  static Type Empty() { return nullptr; }
  static void Release(Type binding) { RpcBindingFree(&binding); }
};

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return kNoServer;
  UniqueResource<RpcTextPolicy> text;
  UniqueResource<RpcBindingPolicy> binding;
  const auto characters = [](wchar_t* from) { return reinterpret_cast<RPC_WSTR>(from); };
  if (RpcStringBindingComposeW(/*object=*/nullptr, characters(kProtocol), /*address=*/nullptr,
                               characters(arguments[1]), /*options=*/nullptr,
                               text.out()) != RPC_S_OK ||
      RpcBindingFromStringBindingW(text.get(), binding.out()) != RPC_S_OK) {
    return kNoServer;
  }
  // A call without a server would end this process with an exception.
  if (RpcMgmtIsServerListening(binding.get()) != RPC_S_OK) return kNoServer;
  return static_cast<int>(ServeCall(binding.get()));
}
