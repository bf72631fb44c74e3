#include "platform/win32/rpc_client.h"

#include <cstdint>

#include "platform/win32/rpc_call_attributes.h"

namespace Zq::Gantry::Platform {

RpcClient AskForRpcClient() {
  RpcCallAttributesV3 attributes{};
  attributes.Version = kRpcCallAttributesVersion3;
  attributes.Flags = kRpcQueryClientPid;
  const RPC_STATUS status = RpcServerInqCallAttributesW(/*binding=*/nullptr, &attributes);
  if (status != RPC_S_OK) return {status, 0};
  return {RPC_S_OK, static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(attributes.ClientPID))};
}

}  // namespace Zq::Gantry::Platform
