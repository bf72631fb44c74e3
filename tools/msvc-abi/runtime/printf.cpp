// The printf and scanf families. The SDK's headers define them inline over the C runtime's common
// functions; those of mingw-w64 only declare them. This file includes no header, since its
// declarations leave out what does not matter to a call: the types of files and locales.

using Arguments = __builtin_va_list;
using Options = unsigned long long;
using Size = unsigned long long;

namespace {

constexpr Options kStandard = 0;
constexpr Options kUnterminatedIfFull = 1;  // _snprintf
constexpr Options kCountAll = 2;            // snprintf: the length that the whole text would have
constexpr Size kUnlimited = ~0ULL;

}  // namespace

extern "C" {

__declspec(dllimport) void* __cdecl __acrt_iob_func(unsigned index);
__declspec(dllimport) int __cdecl __stdio_common_vfprintf(Options, void* file, const char*,
                                                          void* locale, Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vfwprintf(Options, void* file, const wchar_t*,
                                                           void* locale, Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vsprintf(Options, char*, Size, const char*, void*,
                                                          Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vswprintf(Options, wchar_t*, Size, const wchar_t*,
                                                           void*, Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vsprintf_s(Options, char*, Size, const char*,
                                                            void*, Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vswprintf_s(Options, wchar_t*, Size,
                                                             const wchar_t*, void*, Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vsnprintf_s(Options, char*, Size, Size,
                                                             const char*, void*, Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vsnwprintf_s(Options, wchar_t*, Size, Size,
                                                              const wchar_t*, void*, Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vsscanf(Options, const char*, Size, const char*,
                                                         void*, Arguments);
__declspec(dllimport) int __cdecl __stdio_common_vswscanf(Options, const wchar_t*, Size,
                                                          const wchar_t*, void*, Arguments);

#define RETURN_WITH_ARGUMENTS(call)      \
  Arguments arguments;                   \
  __builtin_va_start(arguments, format); \
  const int result = call;               \
  __builtin_va_end(arguments);           \
  return result

// Some of mingw-w64's headers define the same function inline: the linker keeps either.
#define SHARED __attribute__((used)) inline

// To files.
SHARED int __cdecl vfprintf(void* file, const char* format, Arguments arguments) {
  return __stdio_common_vfprintf(kStandard, file, format, nullptr, arguments);
}
SHARED int __cdecl vfwprintf(void* file, const wchar_t* format, Arguments arguments) {
  return __stdio_common_vfwprintf(kStandard, file, format, nullptr, arguments);
}
SHARED int __cdecl vprintf(const char* format, Arguments arguments) {
  return vfprintf(__acrt_iob_func(1), format, arguments);
}
SHARED int __cdecl printf(const char* format, ...) {
  RETURN_WITH_ARGUMENTS(vprintf(format, arguments));
}
SHARED int __cdecl wprintf(const wchar_t* format, ...) {
  RETURN_WITH_ARGUMENTS(vfwprintf(__acrt_iob_func(1), format, arguments));
}
SHARED int __cdecl fprintf(void* file, const char* format, ...) {
  RETURN_WITH_ARGUMENTS(vfprintf(file, format, arguments));
}
SHARED int __cdecl fwprintf(void* file, const wchar_t* format, ...) {
  RETURN_WITH_ARGUMENTS(vfwprintf(file, format, arguments));
}

// To narrow buffers.
SHARED int __cdecl vsprintf(char* buffer, const char* format, Arguments arguments) {
  return __stdio_common_vsprintf(kUnterminatedIfFull, buffer, kUnlimited, format, nullptr,
                                 arguments);
}
SHARED int __cdecl sprintf(char* buffer, const char* format, ...) {
  RETURN_WITH_ARGUMENTS(vsprintf(buffer, format, arguments));
}
SHARED int __cdecl vsnprintf(char* buffer, Size size, const char* format, Arguments arguments) {
  return __stdio_common_vsprintf(kCountAll, buffer, size, format, nullptr, arguments);
}
SHARED int __cdecl snprintf(char* buffer, Size size, const char* format, ...) {
  RETURN_WITH_ARGUMENTS(vsnprintf(buffer, size, format, arguments));
}
SHARED int __cdecl _vsnprintf(char* buffer, Size size, const char* format, Arguments arguments) {
  return __stdio_common_vsprintf(kUnterminatedIfFull, buffer, size, format, nullptr, arguments);
}
SHARED int __cdecl _snprintf(char* buffer, Size size, const char* format, ...) {
  RETURN_WITH_ARGUMENTS(_vsnprintf(buffer, size, format, arguments));
}
SHARED int __cdecl sprintf_s(char* buffer, Size size, const char* format, ...) {
  RETURN_WITH_ARGUMENTS(
      __stdio_common_vsprintf_s(kStandard, buffer, size, format, nullptr, arguments));
}
SHARED int __cdecl _snprintf_s(char* buffer, Size size, Size count, const char* format, ...) {
  RETURN_WITH_ARGUMENTS(
      __stdio_common_vsnprintf_s(kStandard, buffer, size, count, format, nullptr, arguments));
}

// To wide buffers.
SHARED int __cdecl vswprintf(wchar_t* buffer, Size size, const wchar_t* format,
                             Arguments arguments) {
  return __stdio_common_vswprintf(kStandard, buffer, size, format, nullptr, arguments);
}
SHARED int __cdecl swprintf(wchar_t* buffer, Size size, const wchar_t* format, ...) {
  RETURN_WITH_ARGUMENTS(vswprintf(buffer, size, format, arguments));
}
SHARED int __cdecl _vsnwprintf(wchar_t* buffer, Size size, const wchar_t* format,
                               Arguments arguments) {
  return __stdio_common_vswprintf(kUnterminatedIfFull, buffer, size, format, nullptr, arguments);
}
SHARED int __cdecl _snwprintf(wchar_t* buffer, Size size, const wchar_t* format, ...) {
  RETURN_WITH_ARGUMENTS(_vsnwprintf(buffer, size, format, arguments));
}
SHARED int __cdecl _vscwprintf(const wchar_t* format, Arguments arguments) {
  return __stdio_common_vswprintf(kCountAll, nullptr, 0, format, nullptr, arguments);
}
SHARED int __cdecl vswprintf_s(wchar_t* buffer, Size size, const wchar_t* format,
                               Arguments arguments) {
  return __stdio_common_vswprintf_s(kStandard, buffer, size, format, nullptr, arguments);
}
SHARED int __cdecl swprintf_s(wchar_t* buffer, Size size, const wchar_t* format, ...) {
  RETURN_WITH_ARGUMENTS(vswprintf_s(buffer, size, format, arguments));
}
SHARED int __cdecl _snwprintf_s(wchar_t* buffer, Size size, Size count, const wchar_t* format,
                                ...) {
  RETURN_WITH_ARGUMENTS(
      __stdio_common_vsnwprintf_s(kStandard, buffer, size, count, format, nullptr, arguments));
}

// From texts.
SHARED int __cdecl sscanf(const char* text, const char* format, ...) {
  RETURN_WITH_ARGUMENTS(
      __stdio_common_vsscanf(kStandard, text, kUnlimited, format, nullptr, arguments));
}
SHARED int __cdecl swscanf(const wchar_t* text, const wchar_t* format, ...) {
  RETURN_WITH_ARGUMENTS(
      __stdio_common_vswscanf(kStandard, text, kUnlimited, format, nullptr, arguments));
}

}  // extern "C"
