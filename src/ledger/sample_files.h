#pragma once

#include <string>
#include <string_view>

#include "base/calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The collector's encrypted file of one day, in the given data folder.
std::wstring EncryptedSamplePath(const std::wstring& folder, const DateTime& day);

/// The plain copy that lies beside it for the moment of reading.
std::wstring PlainSamplePath(const std::wstring& folder, const DateTime& day);

/// The content of the plain copy for an opened sample blob (UTF-16LE text): the low byte of each
/// character, then zero bytes up to the length of `opened`.
std::string PlainCopyContent(std::string_view opened);

/// Where the plain copy of an encrypted sample file lies: "unencrypt-" before the file's name.
/// Empty for a path without a separator.
std::wstring PlainCopyPath(const std::wstring& encryptedPath);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
