// Handlers of exceptions, as MSVC's runtime declares them.
#pragma once
#include <vcruntime.h>
typedef void(__cdecl* terminate_handler)();
typedef void(__cdecl* terminate_function)();
extern "C" [[noreturn]] void __cdecl terminate() noexcept;
terminate_handler __cdecl set_terminate(terminate_handler) noexcept;
extern "C" terminate_handler __cdecl _get_terminate() noexcept;
typedef void(__cdecl* _se_translator_function)(unsigned int, struct _EXCEPTION_POINTERS*);
_se_translator_function __cdecl _set_se_translator(_se_translator_function);
typedef void(__cdecl* unexpected_handler)();
typedef void(__cdecl* unexpected_function)();
[[noreturn]] void __cdecl unexpected() noexcept(false);
unexpected_handler __cdecl set_unexpected(unexpected_handler) noexcept;
extern "C" unexpected_handler __cdecl _get_unexpected() noexcept;
