#pragma once

#include <string>

#include "import_patch.h"

namespace TestSupport {

/// While it exists, the standard library cannot read the status of any file or of one: access is
/// denied. One at a time. The system call that fails depends on the library.
class FailingStatus {
 public:
  /// An empty path stands for all files.
  explicit FailingStatus(const std::wstring& path = {});
  FailingStatus(const FailingStatus&) = delete;
  FailingStatus& operator=(const FailingStatus&) = delete;

 private:
  Standin::ImportPatch patch_;
};

}  // namespace TestSupport
