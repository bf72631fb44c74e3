#include "call_failures.h"

#include <windows.h>

#include <errno.h>
#include <rpc.h>
#include <stdio.h>
#include <wincrypt.h>
#include <wintrust.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <new>
#include <system_error>

#include "left_out.h"

namespace Faults {

namespace {

const FaultPoints* currentPoints = nullptr;

template <typename Function>
Function* TargetOf(const char* name) {
  return reinterpret_cast<Function*>(currentPoints->Target(name));
}

/// Fails with a result and a last error. The arguments do not matter, and the result is returned in
/// one register.
template <std::uint64_t kResult, DWORD kError>
std::uint64_t WithLastError() {
  SetLastError(kError);
  return kResult;
}

/// Fails with a result, which is also a status.
template <std::uint64_t kResult>
std::uint64_t WithResult() {
  return kResult;
}

template <std::uint64_t kResult, int kError>
std::uint64_t WithErrno() {
  errno = kError;
  return kResult;
}

/// Fails with a status and clears the out-pointer that is the call's `kPlace`-th argument, from 1.
template <std::uint32_t kStatus, int kPlace>
std::uint64_t WithoutObject(void* first, void* second, void* third, void* fourth, void* fifth) {
  void* const arguments[] = {first, second, third, fourth, fifth};
  *static_cast<void**>(arguments[kPlace - 1]) = nullptr;
  return kStatus;
}

constexpr std::uint64_t kNull = 0;
constexpr std::uint64_t kFalse = 0;
constexpr std::uint64_t kMinusOne = 0xFFFFFFFFFFFFFFFF;
constexpr std::uint64_t kNoHandle = kMinusOne;   // INVALID_HANDLE_VALUE
constexpr std::uint32_t kNoMemory = 0x8007000E;  // E_OUTOFMEMORY

int FailOpen(FILE** file, const wchar_t*, const wchar_t*) {
  *file = nullptr;
  errno = EACCES;
  return EACCES;
}

std::size_t FailRead(void*, std::size_t, std::size_t, FILE* file) {
  file->_flag |= _IOERR;
  errno = EIO;
  return 0;
}

/// A full disk: half of the data is written.
std::size_t FailWrite(const void* data, std::size_t size, std::size_t count, FILE* file) {
  const std::size_t written = TargetOf<std::size_t(const void*, std::size_t, std::size_t, FILE*)>(
      "fwrite")(data, size, count / 2, file);
  file->_flag |= _IOERR;
  errno = ENOSPC;
  return written;
}

int FailPut(int, FILE* file) {
  file->_flag |= _IOERR;
  errno = ENOSPC;
  return EOF;
}

int FailFlush(FILE* file) {
  if (file != nullptr) file->_flag |= _IOERR;
  errno = ENOSPC;
  return EOF;
}

/// The file is closed all the same.
int FailClose(FILE* file) {
  TargetOf<int(FILE*)>("fclose")(file);
  errno = ENOSPC;
  return EOF;
}

/// A verification has another verdict and no state; the call that closes a state does so.
template <std::uint32_t kVerdict>
LONG FailTrust(HWND window, GUID* action, WINTRUST_DATA* data) {
  if (data->dwStateAction == WTD_STATEACTION_CLOSE) {
    TargetOf<LONG(HWND, GUID*, WINTRUST_DATA*)>("WinVerifyTrust")(window, action, data);
  } else {
    data->hWVTStateData = nullptr;
  }
  return static_cast<LONG>(kVerdict);
}

/// Impersonation ends all the same.
long FailRevert() {
  TargetOf<long()>("RpcRevertToSelf")();
  return RPC_S_INVALID_BINDING;
}

BOOL FailCatalogHash(HANDLE, HANDLE, DWORD* bytes, BYTE*, DWORD) {
  *bytes = 0;
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return FALSE;
}

using PathType = std::filesystem::path;

std::error_code Denied() { return std::make_error_code(std::errc::permission_denied); }

[[noreturn]] std::filesystem::file_status ThrowStatus(const PathType& path) {
  throw std::filesystem::filesystem_error("status", path, Denied());
}

std::filesystem::file_status FailStatus(const PathType&, std::error_code& error) {
  error = Denied();
  return std::filesystem::file_status(std::filesystem::file_type::none);
}

/// A constructor: the first argument is the object.
void FailIterator(void*, const PathType& path, std::filesystem::directory_options,
                  std::error_code* error) {
  if (error == nullptr) {
    throw std::filesystem::filesystem_error("directory iterator cannot open directory", path,
                                            Denied());
  }
  *error = Denied();
}

[[noreturn]] void* FailIncrement(void*) {
  throw std::filesystem::filesystem_error("directory iterator cannot advance", Denied());
}

[[noreturn]] void ThrowNoThread() {
  throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again));
}

[[noreturn]] void ThrowNoProcess() {
  throw std::system_error(std::make_error_code(std::errc::no_such_process));
}

[[noreturn]] void* ThrowBadAlloc(std::size_t) { throw std::bad_alloc(); }

template <typename Function>
void* Address(Function* function) {
  return reinterpret_cast<void*>(function);
}

}  // namespace

void UseTargetsOf(const FaultPoints& points) { currentPoints = &points; }

// The results are those that the documentation of each call gives for a failure, with an error that
// the call has on a machine whose memory, disk, access rights or services fail.
const std::vector<CallFailure>& AllCallFailures() {
  static const std::vector<CallFailure> failures = {
      // ADVAPI32
      {"GetAce", "FALSE, 87", Address(&WithLastError<kFalse, ERROR_INVALID_PARAMETER>)},
      {"GetNamedSecurityInfoW", "5", Address(&WithResult<ERROR_ACCESS_DENIED>)},
      {"LookupAccountSidW", "FALSE, 1332", Address(&WithLastError<kFalse, ERROR_NONE_MAPPED>)},
      {"OpenProcessToken", "FALSE, 5", Address(&WithLastError<kFalse, ERROR_ACCESS_DENIED>)},
      {"RegEnumKeyExW", "5", Address(&WithResult<ERROR_ACCESS_DENIED>)},
      {"RegOpenKeyExW", "5", Address(&WithResult<ERROR_ACCESS_DENIED>)},
      {"RegQueryValueExW", "5", Address(&WithResult<ERROR_ACCESS_DENIED>)},
      // CRYPT32
      {"CertNameToStrW", "0", Address(&WithResult<0>)},
      {"CryptStringToBinaryA", "FALSE, 13", Address(&WithLastError<kFalse, ERROR_INVALID_DATA>)},
      {"CryptUnprotectData", "FALSE, 13", Address(&WithLastError<kFalse, ERROR_INVALID_DATA>)},
      // gdiplus
      {"GdipCreateBitmapFromHICON", "OutOfMemory", Address(&WithResult<3>)},
      {"GdipGetImageEncoders", "OutOfMemory", Address(&WithResult<3>)},
      {"GdipGetImageEncodersSize", "OutOfMemory", Address(&WithResult<3>)},
      {"GdipSaveImageToFile", "Win32Error", Address(&WithResult<7>)},
      {"GdiplusStartup", "OutOfMemory", Address(&WithResult<3>)},
      // KERNEL32
      {"CopyFileA", "FALSE, 5", Address(&WithLastError<kFalse, ERROR_ACCESS_DENIED>)},
      {"CreateDirectoryW", "FALSE, 112", Address(&WithLastError<kFalse, ERROR_DISK_FULL>)},
      {"CreateFileW", "INVALID_HANDLE_VALUE, 32",
       Address(&WithLastError<kNoHandle, ERROR_SHARING_VIOLATION>)},
      {"DuplicateHandle", "FALSE, 5", Address(&WithLastError<kFalse, ERROR_ACCESS_DENIED>)},
      {"ExpandEnvironmentStringsW", "0, 8", Address(&WithLastError<0, ERROR_NOT_ENOUGH_MEMORY>)},
      {"FindFirstFileW", "INVALID_HANDLE_VALUE, 5",
       Address(&WithLastError<kNoHandle, ERROR_ACCESS_DENIED>)},
      {"FindNextFileW", "FALSE, 5", Address(&WithLastError<kFalse, ERROR_ACCESS_DENIED>)},
      {"GetEnvironmentVariableW", "0, 8", Address(&WithLastError<0, ERROR_NOT_ENOUGH_MEMORY>)},
      {"GetFileAttributesW", "INVALID_FILE_ATTRIBUTES, 5",
       Address(&WithLastError<INVALID_FILE_ATTRIBUTES, ERROR_ACCESS_DENIED>)},
      {"GetFileType", "FILE_TYPE_UNKNOWN, 1",
       Address(&WithLastError<FILE_TYPE_UNKNOWN, ERROR_INVALID_FUNCTION>)},
      {"GetFullPathNameW", "0, 8", Address(&WithLastError<0, ERROR_NOT_ENOUGH_MEMORY>)},
      {"GetModuleFileNameW", "0, 8", Address(&WithLastError<0, ERROR_NOT_ENOUGH_MEMORY>)},
      {"GetModuleHandleExW", "FALSE, 126", Address(&WithLastError<kFalse, ERROR_MOD_NOT_FOUND>)},
      {"GetPackageFamilyName", "15700", Address(&WithResult<15700>)},
      {"GetProcAddress", "null, 127", Address(&WithLastError<kNull, ERROR_PROC_NOT_FOUND>)},
      {"LoadLibraryW", "null, 126", Address(&WithLastError<kNull, ERROR_MOD_NOT_FOUND>)},
      {"OpenProcess", "null, 5", Address(&WithLastError<kNull, ERROR_ACCESS_DENIED>)},
      {"QueryDosDeviceA", "0, 2", Address(&WithLastError<0, ERROR_FILE_NOT_FOUND>)},
      {"SetCurrentDirectoryW", "FALSE, 5", Address(&WithLastError<kFalse, ERROR_ACCESS_DENIED>)},
      {"SetEnvironmentVariableW", "FALSE, 8",
       Address(&WithLastError<kFalse, ERROR_NOT_ENOUGH_MEMORY>)},
      {"SetThreadPriority", "FALSE, 5", Address(&WithLastError<kFalse, ERROR_ACCESS_DENIED>)},
      // msvcrt
      {"_filelengthi64", "-1, EBADF", Address(&WithErrno<kMinusOne, EBADF>)},
      {"_localtime64", "null, EINVAL", Address(&WithErrno<kNull, EINVAL>)},
      {"_mktime64", "-1, EINVAL", Address(&WithErrno<kMinusOne, EINVAL>)},
      {"_time64", "-1", Address(&WithResult<kMinusOne>)},
      {"_wfopen", "null, EACCES", Address(&WithErrno<kNull, EACCES>)},
      {"_wfopen_s", "EACCES", Address(&FailOpen)},
      {"_wunlink", "-1, EACCES", Address(&WithErrno<kMinusOne, EACCES>)},
      {"fclose", "EOF, ENOSPC", Address(&FailClose)},
      {"fflush", "EOF, ENOSPC", Address(&FailFlush)},
      {"fgetpos", "-1, EBADF", Address(&WithErrno<kMinusOne, EBADF>)},
      {"fopen", "null, EACCES", Address(&WithErrno<kNull, EACCES>)},
      {"fputc", "EOF, ENOSPC", Address(&FailPut)},
      {"fread", "0, EIO", Address(&FailRead)},
      {"fsetpos", "-1, EBADF", Address(&WithErrno<kMinusOne, EBADF>)},
      {"fwrite", "half, ENOSPC", Address(&FailWrite)},
      {"strftime", "0", Address(&WithErrno<0, EINVAL>)},
      {"system", "-1, ENOMEM", Address(&WithErrno<kMinusOne, ENOMEM>)},
      {"system", "1, no such command", Address(&WithResult<1>)},
      {"wcsftime", "0", Address(&WithErrno<0, EINVAL>)},
      // ole32, OLEAUT32
      {"CoCreateInstance", "REGDB_E_CLASSNOTREG", Address(&WithoutObject<0x80040154, 5>)},
      {"CoIncrementMTAUsage", "E_OUTOFMEMORY", Address(&WithoutObject<kNoMemory, 1>)},
      {"CoInitializeEx", "E_OUTOFMEMORY", Address(&WithResult<kNoMemory>)},
      {"CoInitializeSecurity", "E_OUTOFMEMORY", Address(&WithResult<kNoMemory>)},
      {"CoSetProxyBlanket", "E_NOINTERFACE", Address(&WithResult<0x80004002>)},
      {"SafeArrayAccessData", "E_UNEXPECTED", Address(&WithResult<0x8000FFFF>)},
      {"SafeArrayCreateVector", "null", Address(&WithResult<kNull>)},
      {"SafeArrayGetElement", "E_OUTOFMEMORY", Address(&WithResult<kNoMemory>)},
      {"SafeArrayGetVartype", "E_INVALIDARG", Address(&WithResult<0x80070057>)},
      {"SafeArrayPutElement", "E_OUTOFMEMORY", Address(&WithResult<kNoMemory>)},
      {"SysAllocString", "null", Address(&WithResult<kNull>)},
      // RPCRT4, the Windows Runtime, SHELL32, USERENV, VERSION
      {"RpcImpersonateClient", "1702", Address(&WithResult<RPC_S_INVALID_BINDING>)},
      {"RpcRevertToSelf", "1702", Address(&FailRevert)},
      {"RpcServerInqCallAttributesW", "1725", Address(&WithResult<RPC_S_NO_CALL_ACTIVE>)},
      {"RoActivateInstance", "REGDB_E_CLASSNOTREG", Address(&WithoutObject<0x80040154, 2>)},
      {"RoGetActivationFactory", "REGDB_E_CLASSNOTREG", Address(&WithoutObject<0x80040154, 3>)},
      {"WindowsCreateString", "E_OUTOFMEMORY", Address(&WithoutObject<kNoMemory, 3>)},
      {"WindowsDuplicateString", "E_OUTOFMEMORY", Address(&WithoutObject<kNoMemory, 2>)},
      {"CommandLineToArgvW", "null, 8", Address(&WithLastError<kNull, ERROR_NOT_ENOUGH_MEMORY>)},
      {"ExtractAssociatedIconExA", "null, 5", Address(&WithLastError<kNull, ERROR_ACCESS_DENIED>)},
      {"ExpandEnvironmentStringsForUserW", "FALSE, 5",
       Address(&WithLastError<kFalse, ERROR_ACCESS_DENIED>)},
      {"GetFileVersionInfoA", "FALSE, 5", Address(&WithLastError<kFalse, ERROR_ACCESS_DENIED>)},
      {"GetFileVersionInfoSizeA", "0, 1813",
       Address(&WithLastError<0, ERROR_RESOURCE_TYPE_NOT_FOUND>)},
      {"VerQueryValueA", "FALSE, 1813",
       Address(&WithLastError<kFalse, ERROR_RESOURCE_TYPE_NOT_FOUND>)},
      // WINTRUST
      {"CryptCATAdminAcquireContext2", "FALSE, 8",
       Address(&WithLastError<kFalse, ERROR_NOT_ENOUGH_MEMORY>)},
      {"CryptCATAdminCalcHashFromFileHandle2", "FALSE, 8", Address(&FailCatalogHash)},
      {"CryptCATAdminEnumCatalogFromHash", "null, 1168",
       Address(&WithLastError<kNull, ERROR_NOT_FOUND>)},
      {"CryptCATCatalogInfoFromContext", "FALSE, 8",
       Address(&WithLastError<kFalse, ERROR_NOT_ENOUGH_MEMORY>)},
      {"WTHelperGetProvCertFromChain", "null", Address(&WithResult<kNull>)},
      {"WTHelperGetProvSignerFromChain", "null", Address(&WithResult<kNull>)},
      {"WTHelperProvDataFromStateData", "null", Address(&WithResult<kNull>)},
      {"WinVerifyTrust", "TRUST_E_NOSIGNATURE, no state", Address(&FailTrust<0x800B0100>)},
      {"WinVerifyTrust", "CERT_E_EXPIRED, no state", Address(&FailTrust<0x800B0101>)},
      // Memory
      {"_Znay", "throws std::bad_alloc", Address(&ThrowBadAlloc)},
      {"_Znwy", "throws std::bad_alloc", Address(&ThrowBadAlloc)},
      {"_ZnwyRKSt9nothrow_t", "null", Address(&WithResult<kNull>)},
      {"calloc", "null, ENOMEM", Address(&WithErrno<kNull, ENOMEM>)},
      {"malloc", "null, ENOMEM", Address(&WithErrno<kNull, ENOMEM>)},
      {"realloc", "null, ENOMEM", Address(&WithErrno<kNull, ENOMEM>)},
      // libwinpthread, libstdc++
      {"pthread_gethandle", "null", Address(&WithResult<kNull>)},
      {"pthread_mutex_init", "ENOMEM", Address(&WithResult<ENOMEM>)},
      {"pthread_mutex_lock", "ENOMEM", Address(&WithResult<ENOMEM>)},
      {"_ZNSt10filesystem14symlink_statusERKNS_7__cxx114pathE", "throws, EACCES",
       Address(&ThrowStatus)},
      {"_ZNSt10filesystem14symlink_statusERKNS_7__cxx114pathERSt10error_code", "none, EACCES",
       Address(&FailStatus)},
      {"_ZNSt10filesystem6statusERKNS_7__cxx114pathE", "throws, EACCES", Address(&ThrowStatus)},
      {"_ZNSt10filesystem7__cxx1118directory_iteratorC1ERKNS0_4pathENS_17directory_"
       "optionsEPSt10error_code",
       "throws, EACCES", Address(&FailIterator)},
      {"_ZNSt10filesystem7__cxx1118directory_iteratorppEv", "throws, EACCES",
       Address(&FailIncrement)},
      {"_ZNSt13basic_filebufIwSt11char_traitsIwEE4openEPKwSt13_Ios_Openmode", "null",
       Address(&WithResult<kNull>)},
      {"_ZNSt13basic_filebufIwSt11char_traitsIwEE5closeEv", "null", Address(&WithResult<kNull>)},
      {"_ZNSt6thread15_M_start_threadESt10unique_ptrINS_6_StateESt14default_deleteIS1_EEPFvvE",
       "throws, EAGAIN", Address(&ThrowNoThread)},
      {"_ZNSt6thread4joinEv", "throws, ESRCH", Address(&ThrowNoProcess)},
      {"_ZNSt6thread6detachEv", "throws, ESRCH", Address(&ThrowNoProcess)},
  };
  return failures;
}

std::string_view ReasonToLeaveOut(const Import& import) {
  const auto& failures = AllCallFailures();
  if (std::any_of(failures.begin(), failures.end(),
                  [&](const CallFailure& row) { return import.name == row.name; })) {
    return {};
  }
  return ListedReason(import);
}

}  // namespace Faults
