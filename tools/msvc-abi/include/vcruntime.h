// The settings that MSVC's standard library expects of its compiler's runtime.
#ifndef _VCRUNTIME_H
#define _VCRUNTIME_H
#define _VCRT_COMPILER_PREPROCESSOR 1
#include <_mingw.h>
#include <corecrt.h>
#include <sal.h>
#ifndef _MSVC_LANG
#error target must be windows-msvc
#endif
#define _STL_LANG _MSVC_LANG
#define _HAS_CXX17 1
#define _HAS_CXX20 1
#define _HAS_CXX23 0
#define _HAS_CXX26 0
#define _HAS_NODISCARD 1
#define _CRT_BEGIN_C_HEADER extern "C" {
#define _CRT_END_C_HEADER }
#define _VCRTIMP __declspec(dllimport)
#define _ACRTIMP __declspec(dllimport)
#ifndef _CRT_STRINGIZE
#define _CRT_STRINGIZE_(x) #x
#define _CRT_STRINGIZE(x) _CRT_STRINGIZE_(x)
#endif
#define _CRT_CONCATENATE_(a, b) a##b
#define _CRT_CONCATENATE(a, b) _CRT_CONCATENATE_(a, b)
#define _VCRT_ALLOCATOR __declspec(allocator)
#define _VCRT_NOALIAS __declspec(noalias)
#define _VCRT_RESTRICT __declspec(restrict)
#ifndef __CRTDECL
#define __CRTDECL __cdecl
#endif
#define __CLRCALL_OR_CDECL __cdecl
#define __CLRCALL_PURE_OR_CDECL __cdecl
#define __CLR_OR_THIS_CALL
#define __vcrt_bool bool
#ifndef _CRT_PACKING
#define _CRT_PACKING 8
#endif
#ifndef _CONST_RETURN
#define _CONST_RETURN const
#endif
#define _CRT_CONST_RETURN _CONST_RETURN
#ifndef _HAS_EXCEPTIONS
#define _HAS_EXCEPTIONS 1
#endif
#define _CRT_SATELLITE_1
#define _CRT_SATELLITE_2
#define _CRT_SATELLITE_CODECVT_IDS
#define _CRT_SATELLITE_CODECVT_IDS_NOIMPORT

#define _MSVC_CONSTEXPR [[msvc::constexpr]]
#define _NODISCARD [[nodiscard]]
#define _CRT_GUARDOVERFLOW
#define _CRT_SECURE_INVALID_PARAMETER(x)
extern "C" [[noreturn]] void __cdecl _invoke_watson(wchar_t const*, wchar_t const*, wchar_t const*,
                                                    unsigned int, uintptr_t);
extern "C" void __cdecl _invalid_parameter_noinfo();
extern "C" [[noreturn]] void __cdecl _invalid_parameter_noinfo_noreturn();
#endif
