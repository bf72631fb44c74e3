// mingw-w64's, with the classifications as functions, which the standard library expects, and with
// MSVC's values.
#pragma once
#pragma push_macro("__CRT__NO_INLINE")
#define __CRT__NO_INLINE 1
#include_next <math.h>
#pragma pop_macro("__CRT__NO_INLINE")
#undef fpclassify
#undef isfinite
#undef isinf
#undef isnan
#undef isnormal
#undef signbit
#undef isgreater
#undef isgreaterequal
#undef isless
#undef islessequal
#undef islessgreater
#undef isunordered
#undef FP_ZERO
#undef FP_SUBNORMAL
#undef FP_NORMAL
#undef FP_INFINITE
#undef FP_NAN
#define FP_INFINITE 1
#define FP_NAN 2
#define FP_NORMAL (-1)
#define FP_SUBNORMAL (-2)
#define FP_ZERO 0
#ifdef __cplusplus
extern "C++" {
#define WATTLEAF_CLASSIFY(T)                                                               \
  inline bool signbit(T x) noexcept { return __builtin_signbit(x); }                       \
  inline int fpclassify(T x) noexcept {                                                    \
    return __builtin_fpclassify(FP_NAN, FP_INFINITE, FP_NORMAL, FP_SUBNORMAL, FP_ZERO, x); \
  }
WATTLEAF_CLASSIFY(float)
WATTLEAF_CLASSIFY(double)
WATTLEAF_CLASSIFY(long double)
#undef WATTLEAF_CLASSIFY
}
#endif
