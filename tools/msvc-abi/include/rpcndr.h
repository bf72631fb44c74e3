// mingw-w64's, with identifiers of interfaces in MSVC's form.
#pragma once
#include_next <rpcndr.h>
#undef MIDL_INTERFACE
#define MIDL_INTERFACE(x) struct __declspec(uuid(x)) __declspec(novtable)
