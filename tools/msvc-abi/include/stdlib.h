// mingw-w64's, with the overloads of C++.
#pragma once
#include_next <stdlib.h>
#ifdef __cplusplus
extern "C++" {
inline long abs(long x) noexcept { return labs(x); }
inline long long abs(long long x) noexcept { return llabs(x); }
inline ldiv_t div(long a, long b) noexcept { return ldiv(a, b); }
inline lldiv_t div(long long a, long long b) noexcept { return lldiv(a, b); }
}
#endif
