// As MSVC's runtime declares it.
#pragma once
#include <vcruntime.h>
typedef struct __declspec(align(16)) _SETJMP_FLOAT128 {
  unsigned __int64 Part[2];
} _JBTYPE;
typedef _JBTYPE jmp_buf[16];
extern "C" {
int __cdecl _setjmp(jmp_buf);
[[noreturn]] void __cdecl longjmp(jmp_buf, int);
}
#define setjmp _setjmp
