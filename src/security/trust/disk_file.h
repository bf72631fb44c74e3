#pragma once

#include "platform/win32/owners.h"

// Only files on a disk can be signed: the server of a pipe may return other content each time that
// the pipe is opened, and reading it may never end. Nothing is logged here.
namespace Zq::Gantry::Security {

/// Opens a file on a disk for reading (CreateFileW, GetFileType), with full sharing, so that other
/// programs keep their access. Empty for anything else, for a null path, and if the file cannot be
/// opened.
[[nodiscard]] Platform::UniqueFileHandle OpenDiskFile(const wchar_t* path);

/// Whether `path` is known to lead to something other than a file on a disk. False for a path that
/// cannot be opened, about which nothing is known, unless the error is that of a busy pipe. `path`
/// is not null.
[[nodiscard]] bool IsKnownNotToBeADiskFile(const wchar_t* path);

}  // namespace Zq::Gantry::Security
