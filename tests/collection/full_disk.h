#pragma once

#include <functional>
#include <string>
#include <vector>

#include "import_patch.h"

namespace TestSupport {

/// While it exists, this process has no room for some of the bytes that it writes to the files of a
/// folder. Every library writes through the replaced call, so no write is missed. One at a time.
class FullDisk {
 public:
  /// How much of the write with this number, from 1, reaches the file, in quarters.
  using Room = std::function<int(int write)>;
  static constexpr int kAll = 4;

  FullDisk(const std::wstring& folder, Room room);
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;
  ~FullDisk();

  /// The names of the files that were written, one for each write, in order.
  [[nodiscard]] static const std::vector<std::wstring>& Writes();

 private:
  const Standin::ImportPatch patch_;
};

}  // namespace TestSupport
