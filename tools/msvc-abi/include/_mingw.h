// mingw-w64's, without the definitions that hide attributes from MSVC's mode of clang.
#pragma once
#include_next <_mingw.h>
#undef __attribute__
#undef __MINGW_NOTHROW
#define __MINGW_NOTHROW __attribute__((__nothrow__))
#undef __MINGW_ATTRIB_DEPRECATED
#define __MINGW_ATTRIB_DEPRECATED __attribute__((__deprecated__))
#undef __MINGW_ATTRIB_DEPRECATED_MSG
#define __MINGW_ATTRIB_DEPRECATED_MSG(x) __attribute__((__deprecated__(x)))
#undef __MINGW_ATTRIB_NORETURN
#define __MINGW_ATTRIB_NORETURN __attribute__((__noreturn__))
#undef __MINGW_ATTRIB_MALLOC
#define __MINGW_ATTRIB_MALLOC
#undef _CRTIMP2
#define _CRTIMP2 __declspec(dllimport)
#undef _CRTIMP2_PURE
#define _CRTIMP2_PURE __declspec(dllimport)
#undef __nothrow
#define __nothrow __attribute__((__nothrow__))
