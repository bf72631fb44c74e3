#include "data_folder.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace Faults {

namespace fs = std::filesystem;

Files ReadFolder(const wchar_t* folder) {
  Files files;
  if (!fs::exists(folder)) return files;
  for (const auto& entry : fs::directory_iterator(folder)) {
    std::ifstream file(entry.path(), std::ios::binary);
    files[entry.path().filename().wstring()] =
        std::string(std::istreambuf_iterator<char>(file), {});
  }
  return files;
}

void WriteFolder(const wchar_t* folder, const Files& files) {
  RemoveFolder(folder);
  fs::create_directories(folder);
  for (const auto& [name, content] : files) {
    std::ofstream file(fs::path(folder) / name, std::ios::binary);
    file << content;
    if (!file.flush()) throw std::runtime_error("cannot write into the data folder");
  }
}

void RemoveFolder(const wchar_t* folder) {
  // Another program may hold the folder for a moment, as its current one.
  fs::current_path(L"C:\\");
  fs::remove_all(folder);
}

}  // namespace Faults
