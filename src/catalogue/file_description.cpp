#include "catalogue/file_description.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>
#include <vector>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// One entry of the list of translations, as the resource stores it.
struct Translation {
  WORD language;
  WORD codePage;
};
static_assert(sizeof(Translation) == 4);

/// The longest path that the system accepts, its terminator included. Wine 8 crashes on a longer
/// one.
constexpr std::size_t kMaxPathBytes = 32'767;

using VersionBlock = std::vector<BYTE>;

VersionBlock ReadVersionBlock(const std::string& path) {
  if (path.size() >= kMaxPathBytes) return VersionBlock();
  DWORD ignored = 0;
  const DWORD bytes = GetFileVersionInfoSizeA(path.c_str(), &ignored);
  VersionBlock block(bytes);
  if (bytes == 0 || !GetFileVersionInfoA(path.c_str(), 0, bytes, block.data())) block.clear();
  return block;
}

/// `length`, or the bytes from `value` to the end of the block if those are fewer.
std::size_t WithinBlock(const VersionBlock& block, const void* value, std::size_t length) {
  const auto start = reinterpret_cast<std::uintptr_t>(block.data());
  const auto offset = reinterpret_cast<std::uintptr_t>(value) - start;
  return offset <= block.size() ? std::min(length, block.size() - offset) : length;
}

/// The value of a key of the resource: bytes for data, characters for texts; empty if the key does
/// not exist. The length that VerQueryValueA reports comes from the executable's author, so it is
/// limited to the block.
std::string_view Query(const VersionBlock& block, const char* key) {
  void* value = nullptr;
  UINT length = 0;
  if (!VerQueryValueA(block.data(), key, &value, &length) || value == nullptr) return {};
  return std::string_view(static_cast<const char*>(value), WithinBlock(block, value, length));
}

std::vector<Translation> Translations(const VersionBlock& block) {
  const std::string_view list = Query(block, "\\VarFileInfo\\Translation");
  // A cut-off last entry does not count.
  std::vector<Translation> translations(list.size() / sizeof(Translation));
  if (!translations.empty()) {
    std::memcpy(translations.data(), list.data(), translations.size() * sizeof(Translation));
  }
  return translations;
}

std::string_view DescriptionIn(const VersionBlock& block, const Translation& translation) {
  char key[50];
  const int chars = std::snprintf(key, sizeof(key), "\\StringFileInfo\\%04x%04x\\FileDescription",
                                  static_cast<unsigned>(translation.language),
                                  static_cast<unsigned>(translation.codePage));
  if (chars < 0) return {};
  return Query(block, key);
}

}  // namespace

std::string GetFileDescription(const std::string& path) {
  const VersionBlock block = ReadVersionBlock(path);
  if (block.empty()) return std::string();
  for (const Translation& translation : Translations(block)) {
    const std::string_view text = DescriptionIn(block, translation);
    // The first description ends the search, even if its text is empty.
    if (!text.empty()) return std::string(text.substr(0, text.find('\0')));
  }
  return std::string();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
