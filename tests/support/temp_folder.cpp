#include "support/temp_folder.h"

#include <windows.h>

#include <array>
#include <cstdio>

#include <gtest/gtest.h>

#include "base/wide_file.h"
#include "platform/win32/owners.h"

namespace TestSupport {

using Zq::Gantry::Platform::UniqueFindHandle;
using Zq::Gantry::Server::Services::Wattleaf::UniqueFile;

namespace {

void RemoveTree(const std::wstring& folder);

void RemoveEntry(const std::wstring& folder, const WIN32_FIND_DATAW& entry) {
  const std::wstring name = entry.cFileName;
  if (name == L"." || name == L"..") return;
  const std::wstring path = folder + L"\\" + name;
  const bool isFolder = (entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  const bool isLink = (entry.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (isFolder && !isLink) {
    RemoveTree(path);
  } else if (isFolder) {
    RemoveDirectoryW(path.c_str());
  } else {
    SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    DeleteFileW(path.c_str());
  }
}

void RemoveTree(const std::wstring& folder) {
  {
    WIN32_FIND_DATAW entry{};
    const UniqueFindHandle search(FindFirstFileW((folder + L"\\*").c_str(), &entry));
    bool isFound = static_cast<bool>(search);
    while (isFound) {
      RemoveEntry(folder, entry);
      isFound = FindNextFileW(search.get(), &entry) != 0;
    }
  }
  RemoveDirectoryW(folder.c_str());
}

}  // namespace

TempFolder::TempFolder() {
  std::array<wchar_t, MAX_PATH + 1> base{};
  GetTempPathW(static_cast<DWORD>(base.size()), base.data());
  static int count = 0;
  const std::wstring stem =
      std::wstring(base.data()) + L"wattleaf-" + std::to_wstring(GetCurrentProcessId()) + L"-";
  do {
    path_ = stem + std::to_wstring(count++);
    if (CreateDirectoryW(path_.c_str(), nullptr)) return;
  } while (GetLastError() == ERROR_ALREADY_EXISTS);
  ADD_FAILURE() << "cannot create a temporary folder";
}

TempFolder::~TempFolder() { RemoveTree(path_); }

std::string ReadWholeFile(const std::wstring& path) {
  std::string bytes;
  const UniqueFile file(_wfopen(path.c_str(), L"rb"));
  if (!file) {
    ADD_FAILURE() << "cannot read a file of the test";
    return bytes;
  }
  std::array<char, 65536> buffer{};
  while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get())) {
    bytes.append(buffer.data(), count);
  }
  return bytes;
}

void WriteWholeFile(const std::wstring& path, const std::string& bytes) {
  const UniqueFile file(_wfopen(path.c_str(), L"wb"));
  if (!file) {
    ADD_FAILURE() << "cannot write a file of the test";
    return;
  }
  std::fwrite(bytes.data(), 1, bytes.size(), file.get());
}

bool FileExists(const std::wstring& path) {
  return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

}  // namespace TestSupport
