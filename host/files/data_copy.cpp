#include "files/data_copy.h"

#include <windows.h>

#include <algorithm>
#include <utility>

#include "base/json_limits.h"
#include "base/plain_file.h"
#include "base/utf8_text.h"
#include "files/file_failure.h"
#include "files/private_folder.h"
#include "ledger/sample_files.h"
#include "platform/win32/owners.h"
#include "reports/power_budget.h"
#include "reports/power_store.h"
#include "reports/report_commands.h"

namespace WattleafHost {

namespace {

using Zq::Gantry::Platform::UniqueFileHandle;
using namespace Zq::Gantry::Server::Services::Wattleaf;

/// Whether the library reads a file of this name and size.
bool MayBeRead(const std::wstring& name, std::uint64_t bytes) {
  if (name == kPowerReportFileName) return MostReportTextBytes(bytes) <= kMostReportTreeBytes;
  return bytes <= (name == kPowerStoreFileName ? kLargestPowerStoreBytes : kLargestDataFileBytes);
}

std::uint64_t SizeBytes(HANDLE file) {
  LARGE_INTEGER size{};
  return GetFileSizeEx(file, &size) ? static_cast<std::uint64_t>(size.QuadPart) : 0;
}

/// With full sharing, so that other programs keep their access.
UniqueFileHandle OpenSource(const std::wstring& path) {
  return UniqueFileHandle(CreateFileW(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      /*security=*/nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                                      /*templateFile=*/nullptr));
}

[[noreturn]] void ThrowNotWritten(const std::wstring& path, DWORD error) {
  throw FileFailure("cannot write " + ToUtf8(path) + " (error " + std::to_string(error) +
                    "); free space in the folder for temporary files");
}

/// Copies `bytes` of `source`, fewer if it ends before, and the time of its last change. Returns 0
/// or the error of a failed read.
DWORD CopyContent(HANDLE source, std::uint64_t bytes, const std::wstring& path) {
  const UniqueFileHandle target(CreateFileW(path.c_str(), GENERIC_WRITE, /*share=*/0,
                                            /*security=*/nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                                            /*templateFile=*/nullptr));
  if (!target) ThrowNotWritten(path, GetLastError());
  std::vector<char> block(65536);
  for (std::uint64_t copied = 0; copied < bytes;) {
    const auto wanted = static_cast<DWORD>(std::min<std::uint64_t>(block.size(), bytes - copied));
    DWORD count = 0;
    if (!ReadFile(source, block.data(), wanted, &count, nullptr)) return GetLastError();
    if (count == 0) break;
    DWORD written = 0;
    if (!WriteFile(target.get(), block.data(), count, &written, nullptr) || written != count) {
      ThrowNotWritten(path, GetLastError());
    }
    copied += count;
  }
  FILETIME changed{};
  if (GetFileTime(source, nullptr, nullptr, &changed)) {
    SetFileTime(target.get(), nullptr, nullptr, &changed);
  }
  return 0;
}

/// The name of a file in a data folder, from the function that gives its path.
template <typename PathOfDay>
std::wstring NameOf(PathOfDay pathOfDay, const DateTime& day) {
  return pathOfDay(std::wstring(), day).substr(1);
}

}  // namespace

const char* LeftOutText(LeftOutReason reason) {
  switch (reason) {
    case LeftOutReason::kFolder:
      return "a folder";
    case LeftOutReason::kLink:
      return "a link";
    case LeftOutReason::kNoFile:
      return "a pipe or a device";
    case LeftOutReason::kTooLarge:
      return "too large";
    case LeftOutReason::kUnreadable:
      return "not readable by this user";
  }
  return "";
}

DataCopy::DataCopy(std::wstring dataFolder)
    : dataFolder_(std::move(dataFolder)), folder_(MakePrivateFolder()) {}

DataCopy::~DataCopy() { RemoveFolderTree(folder_); }

bool DataCopy::LeaveOut(const std::wstring& name, LeftOutReason reason, std::uint32_t systemError) {
  leftOut_.push_back({name, reason, systemError});
  return false;
}

bool DataCopy::LeaveOutNoPlainFile(const std::wstring& name, const std::wstring& source) {
  const DWORD attributes = GetFileAttributesW(source.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return false;
  if (IsLink(source, attributes)) return LeaveOut(name, LeftOutReason::kLink);
  const bool isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return LeaveOut(name, isFolder ? LeftOutReason::kFolder : LeftOutReason::kLink);
}

bool DataCopy::Add(const std::wstring& name) {
  if (FindLeftOut(name)) return false;
  const std::wstring path = File(name);
  if (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES) return true;

  const std::wstring source = dataFolder_ + L"\\" + name;
  // The rules of the library: what it does not read is not copied either.
  const std::optional<bool> isPlain = TryIsPlainFile(source);
  if (!isPlain) return LeaveOut(name, LeftOutReason::kUnreadable, GetLastError());
  if (!*isPlain) return LeaveOutNoPlainFile(name, source);

  const UniqueFileHandle file = OpenSource(source);
  if (!file) return LeaveOut(name, LeftOutReason::kUnreadable, GetLastError());
  if (GetFileType(file.get()) != FILE_TYPE_DISK) return LeaveOut(name, LeftOutReason::kNoFile);
  const std::uint64_t bytes = SizeBytes(file.get());
  if (!MayBeRead(name, bytes)) return LeaveOut(name, LeftOutReason::kTooLarge);
  const DWORD error = CopyContent(file.get(), bytes, path);
  if (error == 0) return true;
  DeleteFileW(path.c_str());
  return LeaveOut(name, LeftOutReason::kUnreadable, error);
}

void DataCopy::AddSamplesOf(const DateTime& day) {
  Add(NameOf(&EncryptedSamplePath, day));
  Add(NameOf(&PlainSamplePath, day));
}

std::optional<LeftOutFile> DataCopy::FindLeftOut(const std::wstring& name) const {
  const auto found = std::ranges::find(leftOut_, name, &LeftOutFile::name);
  if (found == leftOut_.end()) return std::nullopt;
  return *found;
}

}  // namespace WattleafHost
