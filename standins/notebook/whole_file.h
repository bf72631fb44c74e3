#pragma once

// Stand-in: writes a file of the simulated notebook.

#include <cstdio>
#include <string>

#include "base/wide_file.h"

namespace Standin {

/// Writes `bytes` as the whole content of the file at `path`. False if a byte is not written. Other
/// programs may have the file open.
[[nodiscard]] inline bool TryWriteWholeFile(const std::wstring& path, const std::string& bytes) {
  const Zq::Gantry::Server::Services::Wattleaf::UniqueFile file(_wfopen(path.c_str(), L"wb"));
  if (!file) return false;
  const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file.get()) == bytes.size();
  return std::fflush(file.get()) == 0 && isWritten;
}

}  // namespace Standin
