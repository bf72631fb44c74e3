#pragma once

#include <windows.h>

// GetPackageFamilyName, which not every SDK declares though its import libraries have it.
#if defined(__MINGW32__)
/// `length` counts characters with the terminator, in and out; the name may be null for a length of
/// 0. 0, ERROR_INSUFFICIENT_BUFFER, APPMODEL_ERROR_NO_PACKAGE or another error.
extern "C" __declspec(dllimport) LONG WINAPI
    GetPackageFamilyName(HANDLE process, UINT32* length, PWSTR name);
#else
#include <appmodel.h>
#endif
