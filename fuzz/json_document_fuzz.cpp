// Any bytes as a file of the data folder: reading, writing and reading again must not fail a
// sanitizer, and a document that was read must be written. The readers must agree with the plain
// ones.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "base/json_document.h"
#include "base/json_oracle.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

constexpr std::array<std::string_view, 3> kNames{"Key", "Value", ""};

std::filesystem::path ScratchFile() {
  std::string path = (std::filesystem::temp_directory_path() / "wattleaf-fuzz-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  return path + "/file.json";
}

std::unique_ptr<GenericDocument> Load(const std::wstring& path) {
  return std::unique_ptr<GenericDocument>(LoadJsonDocument(path));
}

JsonRowsOutcome ExpectedOutcome(const GenericDocument* document) {
  if (document == nullptr) return JsonRowsOutcome::kUnreadable;
  return document->IsArray() ? JsonRowsOutcome::kRows : JsonRowsOutcome::kNoArray;
}

void CompareWithPlainReaders(const std::wstring& path) {
  const auto fast = Load(path);
  const auto plain = TestSupport::DocumentByCharacters(path);
  if ((fast == nullptr) != (plain == nullptr)) std::abort();
  if (fast && TestSupport::WrittenJson(*fast) != TestSupport::WrittenJson(*plain)) std::abort();

  TestSupport::ShownRowSink sink;
  if (ReadJsonRows(path, kNames, sink) != ExpectedOutcome(plain.get())) std::abort();
  if (!plain || !plain->IsArray()) return;
  if (sink.rows != TestSupport::RowsOfDocument(*plain, kNames)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path path = ScratchFile();
  std::ofstream(path, std::ios::binary)
      << std::string_view(reinterpret_cast<const char*>(data), size);
  CompareWithPlainReaders(path.wstring());
  if (const auto document = Load(path.wstring())) {
    // Reading again may fail: some numbers that can be read are written in a form that cannot.
    if (!SaveJsonDocument(path.wstring(), *document)) std::abort();
    Load(path.wstring());
  }
  return 0;
}
