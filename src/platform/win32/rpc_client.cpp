#include "platform/win32/rpc_client.h"

#include <rpcasync.h>

#include <cstddef>
#include <cstdint>

namespace Zq::Gantry::Platform {

namespace {

// For RpcServerInqCallAttributesW with version 3 of its structure, which not every SDK declares.
constexpr unsigned int kRpcCallAttributesVersion3 = 3;
/// RPC_QUERY_CLIENT_PID: the caller's process id; local procedure calls only.
constexpr unsigned long kRpcQueryClientPid = 0x10;

#if defined(__MINGW32__)
/// RPC_CALL_ATTRIBUTES_V3_W. Written out in full: a base of version 2 would end in padding, and the
/// new fields would be 4 bytes too late.
struct RpcCallAttributesV3 {
  unsigned int Version;
  unsigned long Flags;
  unsigned long ServerPrincipalNameBufferLength;  // bytes
  unsigned short* ServerPrincipalName;
  unsigned long ClientPrincipalNameBufferLength;  // bytes
  unsigned short* ClientPrincipalName;
  unsigned long AuthenticationLevel;
  unsigned long AuthenticationService;
  BOOL NullSession;
  BOOL KernelModeCaller;
  unsigned long ProtocolSequence;
  RpcCallClientLocality IsClientLocal;
  HANDLE ClientPID;  // the process id, cast
  unsigned long CallStatus;
  RpcCallType CallType;
  RPC_CALL_LOCAL_ADDRESS_V1* CallLocalAddress;
  unsigned short OpNum;
  UUID InterfaceUuid;
  unsigned long ClientIdentifierBufferLength;
  unsigned char* ClientIdentifier;
};
#else
using RpcCallAttributesV3 = ::RPC_CALL_ATTRIBUTES_V3_W;
#endif

static_assert(sizeof(RpcCallAttributesV3) == 120);
static_assert(offsetof(RpcCallAttributesV3, Flags) == 4);
static_assert(offsetof(RpcCallAttributesV3, IsClientLocal) == 0x3C);
static_assert(offsetof(RpcCallAttributesV3, ClientPID) == 0x40);
static_assert(offsetof(RpcCallAttributesV3, CallLocalAddress) == 0x50);
static_assert(offsetof(RpcCallAttributesV3, InterfaceUuid) == 0x5C);
static_assert(offsetof(RpcCallAttributesV3, ClientIdentifierBufferLength) == 0x6C);
static_assert(offsetof(RpcCallAttributesV3, ClientIdentifier) == 0x70);

}  // namespace

RpcClient QueryRpcClient() {
  RpcCallAttributesV3 attributes{};
  attributes.Version = kRpcCallAttributesVersion3;
  attributes.Flags = kRpcQueryClientPid;
  const RPC_STATUS status = RpcServerInqCallAttributesW(/*binding=*/nullptr, &attributes);
  if (status != RPC_S_OK) return {status, 0};
  return {RPC_S_OK, static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(attributes.ClientPID))};
}

}  // namespace Zq::Gantry::Platform
