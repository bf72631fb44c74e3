#pragma once

#include <windows.h>

#include <rpc.h>

#include <cstdlib>

// What the stubs of a remote procedure call ask of the program that they are linked into, once.

extern "C" void* __RPC_USER MIDL_user_allocate(SIZE_T size) { return std::malloc(size); }
extern "C" void __RPC_USER MIDL_user_free(void* block) { std::free(block); }
