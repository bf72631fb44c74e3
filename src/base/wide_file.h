#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "platform/win32/unique_resource.h"

// The seam to files with wide paths: one Windows body, one native twin.
namespace Zq::Gantry::Server::Services::Wattleaf {

struct FilePolicy {
  using Type = std::FILE*;
  static Type Empty() { return nullptr; }
  static void Release(Type file) { std::fclose(file); }
};
using UniqueFile = Platform::UniqueResource<FilePolicy>;

/// Binary reading; empty where the file cannot be opened.
UniqueFile OpenForReading(const std::wstring& path);

/// The same without a word against other programs that hold the file open for writing.
UniqueFile OpenSharedForReading(const std::wstring& path);

/// Binary writing in place, which cuts the file. Empty where it cannot be opened; a folder or a
/// link of any kind is never opened, since the write would land wherever it leads.
UniqueFile OpenForWriting(const std::wstring& path);

/// The length of an open file in bytes, which is then read from its start; -1 on failure.
std::int64_t LengthBytes(std::FILE* file);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
