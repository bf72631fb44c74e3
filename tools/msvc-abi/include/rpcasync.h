// mingw-w64's, with the attributes of a call as the SDK documents them.
#pragma once
#include_next <rpcasync.h>
/* as the SDK documents it */
typedef struct tagRPC_CALL_ATTRIBUTES_V3_W {
  unsigned int Version;
  unsigned long Flags;
  unsigned long ServerPrincipalNameBufferLength;
  unsigned short* ServerPrincipalName;
  unsigned long ClientPrincipalNameBufferLength;
  unsigned short* ClientPrincipalName;
  unsigned long AuthenticationLevel;
  unsigned long AuthenticationService;
  BOOL NullSession;
  BOOL KernelModeCaller;
  unsigned long ProtocolSequence;
  RpcCallClientLocality IsClientLocal;
  HANDLE ClientPID;
  unsigned long CallStatus;
  RpcCallType CallType;
  RPC_CALL_LOCAL_ADDRESS_V1* CallLocalAddress;
  unsigned short OpNum;
  UUID InterfaceUuid;
  unsigned long ClientIdentifierBufferLength;
  unsigned char* ClientIdentifier;
} RPC_CALL_ATTRIBUTES_V3_W;
