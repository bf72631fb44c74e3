#pragma once

#include <cstdint>
#include <cstdio>
#include <string>

#include "platform/win32/unique_resource.h"

// The seam to files with wide paths, with one body for Windows and one for other systems. All files
// are opened in binary mode; an empty owner is the only report of a failure.
namespace Zq::Gantry::Server::Services::Wattleaf {

struct FilePolicy {
  using Type = std::FILE*;
  static Type Empty() { return nullptr; }
  static void Release(Type file) { std::fclose(file); }
};
/// Closes a C file at the end of its scope.
using UniqueFile = Platform::UniqueResource<FilePolicy>;

/// Opens for reading (`_wfopen_s`). On Windows this fails while another program has the file open
/// for writing. Empty if the file cannot be opened.
[[nodiscard]] UniqueFile OpenForReading(const std::wstring& path);

/// Opens for reading with full sharing (`_wfopen`), so that other programs keep their access.
[[nodiscard]] UniqueFile OpenSharedForReading(const std::wstring& path);

/// Opens for writing in place: the file is made, or its content is dropped. Empty if it cannot be
/// opened, and for a folder or a link of any kind, since a link would redirect the write.
[[nodiscard]] UniqueFile OpenForWriting(const std::wstring& path);

/// The length of an open file in bytes; -1 on failure. Moves the position to the file's start.
[[nodiscard]] std::int64_t LengthBytes(std::FILE* file);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
