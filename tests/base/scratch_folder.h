#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace TestSupport {

/// A new empty folder for tests that run on every system. The destructor removes it with its
/// content.
class ScratchFolder {
 public:
  ScratchFolder() {
    // Repeats until the name is new, since a crashed run may have left a folder.
    do {
      path_ = std::filesystem::temp_directory_path() /
              ("wattleaf-core-" + std::to_string(std::random_device{}()));
    } while (!std::filesystem::create_directory(path_));
  }
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;
  ~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }

  [[nodiscard]] std::filesystem::path File(const std::string& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

[[nodiscard]] inline std::string ReadBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace TestSupport
