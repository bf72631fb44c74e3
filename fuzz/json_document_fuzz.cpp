// Any bytes as a file of the data folder: reading, writing and reading again must not fail a
// sanitizer, and a document that was read must be written.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

#include "base/json_document.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

std::unique_ptr<GenericDocument> Load(const std::filesystem::path& path) {
  return std::unique_ptr<GenericDocument>(LoadJsonDocument(path.wstring()));
}

std::filesystem::path ScratchFile() {
  std::string path = (std::filesystem::temp_directory_path() / "wattleaf-fuzz-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  return path + "/file.json";
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path path = ScratchFile();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const auto first = Load(path);
  if (!first) return 0;
  // Reading again may fail: some numbers that can be read are written in a form that cannot.
  if (!SaveJsonDocument(path.wstring(), *first)) std::abort();
  Load(path);
  return 0;
}
