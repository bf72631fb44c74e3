#include "collection/full_disk.h"

#include <windows.h>

#include <winternl.h>

#include <array>
#include <utility>

namespace TestSupport {

namespace {

constexpr NTSTATUS kDiskFull = static_cast<NTSTATUS>(0xC000007F);

using WriteFunction = NTSTATUS NTAPI(HANDLE, HANDLE, PIO_APC_ROUTINE, void*, IO_STATUS_BLOCK*,
                                     const void*, ULONG, LARGE_INTEGER*, ULONG*);

struct DiskState {
  WriteFunction* write = nullptr;
  std::wstring folder;
  FullDisk::Room room;
  std::vector<std::wstring> writes;
};
DiskState disk;

/// The name of an open file of the folder; empty for another one, a console or a pipe.
std::wstring NameInFolder(HANDLE file) {
  if (GetFileType(file) != FILE_TYPE_DISK) return {};
  std::array<wchar_t, 1024> path{};
  GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), VOLUME_NAME_DOS);
  const std::wstring text = path.data();
  const auto separator = text.rfind(L'\\');
  if (separator == text.npos || !text.substr(0, separator).ends_with(disk.folder)) return {};
  return text.substr(separator + 1);
}

NTSTATUS NTAPI Write(HANDLE file, HANDLE event, PIO_APC_ROUTINE routine, void* context,
                     IO_STATUS_BLOCK* status, const void* data, ULONG bytes, LARGE_INTEGER* offset,
                     ULONG* key) {
  const std::wstring name = NameInFolder(file);
  const auto write = [&](ULONG count) {
    return disk.write(file, event, routine, context, status, data, count, offset, key);
  };
  if (name.empty()) return write(bytes);
  disk.writes.push_back(name);
  const int quarters = disk.room(static_cast<int>(disk.writes.size()));
  if (quarters == FullDisk::kAll) return write(bytes);
  const ULONG part = bytes * static_cast<ULONG>(quarters) / FullDisk::kAll;
  if (part != 0) write(part);
  status->Status = kDiskFull;
  status->Information = 0;
  return kDiskFull;
}

}  // namespace

FullDisk::FullDisk(const std::wstring& folder, Room room)
    : patch_(GetModuleHandleW(L"kernelbase.dll"), "NtWriteFile", &Write) {
  disk = {
      patch_.Original<WriteFunction>(), folder.substr(folder.rfind(L'\\')), std::move(room), {}};
}

FullDisk::~FullDisk() {
  disk.room = [](int) { return kAll; };
}

const std::vector<std::wstring>& FullDisk::Writes() { return disk.writes; }

}  // namespace TestSupport
