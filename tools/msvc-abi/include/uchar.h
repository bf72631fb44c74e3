// Characters of 16 and 32 bits, which mingw-w64 declares for C only.
#pragma once
#include <wchar.h>
extern "C" size_t __cdecl mbrtoc16(char16_t*, const char*, size_t, mbstate_t*);
extern "C" size_t __cdecl c16rtomb(char*, char16_t, mbstate_t*);
extern "C" size_t __cdecl mbrtoc32(char32_t*, const char*, size_t, mbstate_t*);
extern "C" size_t __cdecl c32rtomb(char*, char32_t, mbstate_t*);
