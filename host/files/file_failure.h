#pragma once

#include <stdexcept>

namespace WattleafHost {

/// A file or folder that the host itself needs cannot be read or written. The message names it and
/// says what to do; the program then ends with kFileFailed (options.h).
class FileFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace WattleafHost
