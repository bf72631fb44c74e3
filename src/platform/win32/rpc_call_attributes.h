#pragma once

#include <windows.h>

#include <rpc.h>
#include <rpcasync.h>

#include <cstddef>

// What RpcServerInqCallAttributesW tells about the call that a thread serves, in version 3 of the
// structure, which not every SDK declares.
namespace Zq::Gantry::Platform {

inline constexpr unsigned int kRpcCallAttributesVersion3 = 3;
/// RPC_QUERY_CLIENT_PID: asks for the caller's process id; local procedure calls only.
inline constexpr unsigned long kRpcQueryClientPid = 0x10;

#if defined(__MINGW32__)
/// RPC_CALL_ATTRIBUTES_V3_W. Written out in full: behind the whole of version 2 the new fields
/// would stand 4 bytes too late.
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

}  // namespace Zq::Gantry::Platform
