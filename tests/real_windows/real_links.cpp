#include "real_windows/real_links.h"

#include <winioctl.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "platform/win32/owners.h"
#include "support/temp_folder.h"

namespace TestSupport {

namespace {

using Bytes = std::vector<char>;

constexpr DWORD kMountPointTag = 0xA0000003;
constexpr DWORD kAllowWithoutRights = 0x2;  // SYMBOLIC_LINK_FLAG_ALLOW_UNPRIVILEGED_CREATE
constexpr DWORD kToFolder = 0x1;            // SYMBOLIC_LINK_FLAG_DIRECTORY

template <typename Number>
void Append(Bytes& bytes, Number number) {
  const std::size_t end = bytes.size();
  bytes.resize(end + sizeof(number));
  std::memcpy(bytes.data() + end, &number, sizeof(number));
}

void AppendText(Bytes& bytes, const std::wstring& text) {
  for (const wchar_t character : text) Append(bytes, static_cast<std::uint16_t>(character));
  Append(bytes, std::uint16_t{0});
}

/// The header of a reparse point: its tag and the length of what follows the header.
Bytes Header(DWORD tag, std::size_t length) {
  Bytes bytes;
  Append(bytes, std::uint32_t{tag});
  Append(bytes, static_cast<std::uint16_t>(length));
  Append(bytes, std::uint16_t{0});
  return bytes;
}

/// Writes a reparse point into an existing file or folder.
void SetReparsePoint(const std::wstring& path, Bytes content) {
  const Zq::Gantry::Platform::UniqueFileHandle file(
      CreateFileW(path.c_str(), GENERIC_WRITE, /*share=*/0, /*security=*/nullptr, OPEN_EXISTING,
                  FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT,
                  /*templateFile=*/nullptr));
  ASSERT_TRUE(file) << GetLastError();
  DWORD written = 0;
  ASSERT_TRUE(DeviceIoControl(file.get(), FSCTL_SET_REPARSE_POINT, content.data(),
                              static_cast<DWORD>(content.size()), /*output=*/nullptr, 0, &written,
                              /*overlapped=*/nullptr))
      << GetLastError();
}

/// As WIN32_FIND_DATAW names it; 0 for what is no reparse point.
DWORD TagOf(const std::wstring& path) {
  WIN32_FIND_DATAW entry{};
  const Zq::Gantry::Platform::UniqueFindHandle search(FindFirstFileW(path.c_str(), &entry));
  return search && (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 ? entry.dwReserved0
                                                                                : 0;
}

void MakeSymbolicLink(const std::wstring& path, const std::wstring& target, DWORD flags) {
  ASSERT_TRUE(CreateSymbolicLinkW(path.c_str(), target.c_str(), flags | kAllowWithoutRights))
      << GetLastError();
  ASSERT_EQ(TagOf(path), DWORD{IO_REPARSE_TAG_SYMLINK});
}

}  // namespace

bool MayMakeSymbolicLinks() {
  const TempFolder folder;
  return CreateSymbolicLinkW(folder.File(L"link").c_str(), folder.File(L"target").c_str(),
                             kAllowWithoutRights) != 0;
}

void MakeFileLink(const std::wstring& path, const std::wstring& target) {
  MakeSymbolicLink(path, target, 0);
}

void MakeFolderLink(const std::wstring& path, const std::wstring& target) {
  MakeSymbolicLink(path, target, kToFolder);
}

void MakeJunction(const std::wstring& path, const std::wstring& target) {
  ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr)) << GetLastError();
  Bytes names;
  AppendText(names, L"\\??\\" + target);
  const auto nameLength = static_cast<std::uint16_t>(names.size() - sizeof(wchar_t));
  AppendText(names, {});
  // Four numbers: place and length of the target, and of the text that is shown, which is empty.
  Bytes content = Header(kMountPointTag, 4 * sizeof(std::uint16_t) + names.size());
  Append(content, std::uint16_t{0});
  Append(content, nameLength);
  Append(content, static_cast<std::uint16_t>(nameLength + sizeof(wchar_t)));
  Append(content, std::uint16_t{0});
  content.insert(content.end(), names.begin(), names.end());
  SetReparsePoint(path, std::move(content));
  ASSERT_EQ(TagOf(path), kMountPointTag);
}

void MakeVendorPoint(const std::wstring& path, DWORD tag) {
  // Tags that are not Microsoft's are stored with an identifier of their maker.
  constexpr GUID kMaker = {0x5A7B2C1D, 0x3E4F, 0x4A5B, {1, 2, 3, 4, 5, 6, 7, 8}};
  const char data[] = "content";
  Bytes content = Header(tag, sizeof(data));
  Append(content, kMaker);
  content.insert(content.end(), std::begin(data), std::end(data));
  SetReparsePoint(path, std::move(content));
  ASSERT_EQ(TagOf(path), tag);
}

}  // namespace TestSupport
