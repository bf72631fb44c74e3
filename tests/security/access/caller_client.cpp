// The client of the tests' local procedure call: calls once and ends with what the call gave.
//   caller_client ENDPOINT

#include "caller_probe.h"
#include "rpc_memory.h"

namespace {

constexpr int kNoServer = 100;

wchar_t kProtocol[] = L"ncalrpc";

}  // namespace

int wmain(int count, wchar_t** arguments) {
  if (count != 2) return kNoServer;
  RPC_WSTR text = nullptr;
  RPC_BINDING_HANDLE binding = nullptr;
  const auto characters = [](wchar_t* from) { return reinterpret_cast<RPC_WSTR>(from); };
  if (RpcStringBindingComposeW(/*object=*/nullptr, characters(kProtocol), /*address=*/nullptr,
                               characters(arguments[1]), /*options=*/nullptr, &text) != RPC_S_OK ||
      RpcBindingFromStringBindingW(text, &binding) != RPC_S_OK) {
    return kNoServer;
  }
  RpcStringFreeW(&text);
  // A call to nobody would end this process with an exception.
  if (RpcMgmtIsServerListening(binding) != RPC_S_OK) return kNoServer;
  const long answer = ServeCall(binding);
  RpcBindingFree(&binding);
  return static_cast<int>(answer);
}
