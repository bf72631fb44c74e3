#pragma once

#include <string_view>

namespace Zq::Gantry::Security {

/// Whether the text of `path` alone says that it leads to something other than a file on a disk: a
/// pipe, a mailslot, or a device or volume itself ("\\.\COM1", "\\?\C:"). Opening such a thing may
/// have effects, so this is asked first. False promises nothing: a link or a drive letter may lead
/// to a pipe as well.
bool NamesADevice(std::wstring_view path);

}  // namespace Zq::Gantry::Security
