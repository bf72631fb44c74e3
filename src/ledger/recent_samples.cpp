#include "ledger/recent_samples.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "base/word_scan.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::size_t kPieceBytes = 65536;

/// Reads so many bytes. False if the file has fewer.
bool IsRead(std::FILE* file, char* bytes, std::size_t size) {
  return std::fread(bytes, 1, size, file) == size;
}

}  // namespace

RecentSamples::Samples RecentSamples::Read(std::FILE* file, std::size_t length) const {
  std::vector<const File*> same;  // those that agree with all pieces so far
  for (const File& kept : files_) {
    if (kept.encrypted.size() == length) same.push_back(&kept);
  }
  std::vector<char> piece(same.empty() ? 0 : kPieceBytes);
  std::string text;
  std::size_t count = 0;
  while (!same.empty() && count < length) {
    const std::size_t size = std::min(piece.size(), length - count);
    if (!IsRead(file, piece.data(), size)) return {};
    const std::string& before = same.front()->encrypted;
    std::erase_if(same, [&](const File* kept) {
      return !IsSameText(std::string_view(kept->encrypted).substr(count, size),
                         {piece.data(), size});
    });
    if (same.empty()) text.assign(before, 0, count).append(piece.data(), size);
    count += size;
  }
  if (!same.empty()) return {.plainCopy = &same.front()->plainCopy};
  text.resize(length);
  if (!IsRead(file, text.data() + count, length - count)) return {};
  return {.encrypted = std::move(text)};
}

void RecentSamples::Keep(std::string encrypted, std::string plainCopy) {
  const auto isLong = [](const std::string& text) { return text.size() > kLongTextBytes; };
  if (isLong(encrypted)) {
    std::erase_if(files_, [&](const File& file) { return isLong(file.encrypted); });
  }
  if (files_.size() == kMostFiles) files_.erase(files_.begin());
  files_.push_back({std::move(encrypted), std::move(plainCopy)});
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
