// mingw-w64's, with the identifiers of the first interfaces in MSVC's form.
#pragma once
#ifdef __cplusplus
struct __declspec(uuid("00000000-0000-0000-C000-000000000046")) IUnknown;
struct __declspec(uuid("000e0000-0000-0000-C000-000000000046")) AsyncIUnknown;
struct __declspec(uuid("00000001-0000-0000-C000-000000000046")) IClassFactory;
#endif
#include_next <unknwnbase.h>
