#include "ledger/recent_samples.h"

#include <algorithm>
#include <utility>

namespace Zq::Gantry::Server::Services::Wattleaf {

const std::string* RecentSamples::Find(const std::string& encrypted) const {
  const auto file = std::ranges::find(files_, encrypted, &File::encrypted);
  return file != files_.end() ? &file->plainCopy : nullptr;
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
