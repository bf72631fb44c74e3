#pragma once

#include <string>
#include <string_view>

#include "base/calendar.h"

// Names and content of the sample files (docs/formats/sample-files.md): for each day the
// collector's encrypted file and, while the day is being read, a plain copy beside it. Paths are
// built from a folder without a separator at its end.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// "<folder>\PcmSampleData_2024-03-01.json".
[[nodiscard]] std::wstring EncryptedSamplePath(const std::wstring& folder, const DateTime& day);

/// "<folder>\unencrypt-PcmSampleData_2024-03-01.json".
[[nodiscard]] std::wstring PlainSamplePath(const std::wstring& folder, const DateTime& day);

/// The path of the plain copy of any encrypted file: "unencrypt-" before the file's name. Empty for
/// a path without a separator.
[[nodiscard]] std::wstring PlainCopyPath(const std::wstring& encryptedPath);

/// The content of the plain copy for a decrypted blob, which is UTF-16LE text: the low byte of each
/// character, then zero bytes up to the length of the blob. `memory` is used for it if it is large
/// enough.
[[nodiscard]] std::string PlainCopyContent(std::string_view decrypted, std::string memory = {});

}  // namespace Zq::Gantry::Server::Services::Wattleaf
