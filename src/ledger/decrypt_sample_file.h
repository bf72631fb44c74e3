#pragma once

#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Writes the plain copy of an encrypted sample file beside it: Base64 text around a blob of the
/// data protection interface at machine scope. A file that cannot be read, decoded or opened, or is
/// larger than kLargestDataFileBytes, leaves no copy; nothing is logged.
/// Kept on purpose: always false, whatever happened; ask for the copy instead.
bool DecryptSampleFile(const std::wstring& path);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
