// The packages of processes. mingw-w64 declares them for later versions of Windows only.
#pragma once
#include <windows.h>
extern "C" __declspec(dllimport) LONG WINAPI GetPackageFamilyName(HANDLE, UINT32*, PWSTR);
extern "C" __declspec(dllimport) LONG WINAPI GetPackageFullName(HANDLE, UINT32*, PWSTR);
