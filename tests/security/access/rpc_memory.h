#pragma once

#include <windows.h>

#include <rpc.h>

#include <cstdlib>

// The memory functions that the stubs of a remote procedure call need. Exactly one source of each
// program includes this.

extern "C" void* __RPC_USER MIDL_user_allocate(SIZE_T size) { return std::malloc(size); }
extern "C" void __RPC_USER MIDL_user_free(void* block) { std::free(block); }
