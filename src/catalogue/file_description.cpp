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

/// The longest path that the system knows, its end included. Wine 8 does not survive a longer one.
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

/// `length`, or what is left of the block behind `value` if that is less.
std::size_t WithinBlock(const VersionBlock& block, const void* value, std::size_t length) {
  const auto start = reinterpret_cast<std::uintptr_t>(block.data());
  const auto offset = reinterpret_cast<std::uintptr_t>(value) - start;
  return offset <= block.size() ? std::min(length, block.size() - offset) : length;
}

/// The value behind a key of the resource, with as many units as the call tells, for data bytes and
/// for texts characters; empty if there is none. The call may pass on a length that the
/// executable's author made up, so the block bounds it too.
std::string_view Query(const VersionBlock& block, const char* key) {
  void* value = nullptr;
  UINT length = 0;
  if (!VerQueryValueA(block.data(), key, &value, &length) || value == nullptr) return {};
  return std::string_view(static_cast<const char*>(value), WithinBlock(block, value, length));
}

std::vector<Translation> Translations(const VersionBlock& block) {
  const std::string_view list = Query(block, "\\VarFileInfo\\Translation");
  // A remainder is no translation.
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
    // The first that is there ends the search, even if its text is empty.
    if (!text.empty()) return std::string(text.substr(0, text.find('\0')));
  }
  return std::string();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
