// mingw-w64 has no such declaration of the C runtime.
#pragma once
#include <wchar.h>
#include_next <stdio.h>
#ifdef __cplusplus
extern "C" errno_t __cdecl _get_stream_buffer_pointers(FILE*, char***, char***, int**);
#endif
