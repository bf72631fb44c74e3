// mingw-w64's, which throws only where a compiler defines this macro of GCC's.
#pragma once
#pragma push_macro("__EXCEPTIONS")
#undef __EXCEPTIONS
#define __EXCEPTIONS 1
#include_next <comdef.h>
#pragma pop_macro("__EXCEPTIONS")
