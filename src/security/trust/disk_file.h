#pragma once

#include "platform/win32/owners.h"

// Pipes and devices cannot be signed: a pipe's server may give another content each time that it is
// opened, and it may never end.
namespace Zq::Gantry::Security {

/// Opens a file on a disk for reading, with full sharing, so that other programs keep their access.
/// Empty for anything else, for null and for what cannot be opened.
Platform::UniqueFileHandle OpenDiskFile(const wchar_t* path);

/// Whether `path` is known to lead to something other than a file on a disk. False for a path that
/// cannot be opened: nothing is known of it.
bool IsKnownToBeNoDiskFile(const wchar_t* path);

}  // namespace Zq::Gantry::Security
