// Functions that the SDK's headers or oldnames.lib define.

using Size = unsigned long long;

extern "C" {

// Under their names of POSIX.
#pragma comment(linker, "/alternatename:read=_read")
#pragma comment(linker, "/alternatename:write=_write")
#pragma comment(linker, "/alternatename:close=_close")
#pragma comment(linker, "/alternatename:creat=_creat")
#pragma comment(linker, "/alternatename:dup=_dup")
#pragma comment(linker, "/alternatename:dup2=_dup2")
#pragma comment(linker, "/alternatename:fdopen=_fdopen")
#pragma comment(linker, "/alternatename:fileno=_fileno")
#pragma comment(linker, "/alternatename:isatty=_isatty")
#pragma comment(linker, "/alternatename:open=_open")
#pragma comment(linker, "/alternatename:unlink=_unlink")
#pragma comment(linker, "/alternatename:stricmp=_stricmp")
#pragma comment(linker, "/alternatename:wcsicmp=_wcsicmp")
#pragma comment(linker, "/alternatename:strdup=_strdup")
#pragma comment(linker, "/alternatename:getcwd=_getcwd")
#pragma comment(linker, "/alternatename:chdir=_chdir")
#pragma comment(linker, "/alternatename:rmdir=_rmdir")
#pragma comment(linker, "/alternatename:mkdir=_mkdir")
#pragma comment(linker, "/alternatename:getpid=_getpid")
#pragma comment(linker, "/alternatename:putenv=_putenv")

// mingw-w64's headers refer to it where char is unsigned, as in GoogleTest.
int __mingw_initcharmax = 0;

// Inline in the SDK.
wchar_t* __cdecl wmemset(wchar_t* to, wchar_t value, Size count) {
  for (Size i = 0; i < count; ++i) to[i] = value;
  return to;
}

int __cdecl wmemcmp(const wchar_t* left, const wchar_t* right, Size count) {
  for (Size i = 0; i < count; ++i) {
    if (left[i] != right[i]) return left[i] < right[i] ? -1 : 1;
  }
  return 0;
}

wchar_t* __cdecl wmemchr(const wchar_t* text, wchar_t value, Size count) {
  for (Size i = 0; i < count; ++i) {
    if (text[i] == value) return const_cast<wchar_t*>(text + i);
  }
  return nullptr;
}

wchar_t* __cdecl wmemmove(wchar_t* to, const wchar_t* from, Size count) {
  __builtin_memmove(to, from, count * sizeof(wchar_t));
  return to;
}

wchar_t* __cdecl wmemcpy(wchar_t* to, const wchar_t* from, Size count) {
  return wmemmove(to, from, count);
}

}  // extern "C"
