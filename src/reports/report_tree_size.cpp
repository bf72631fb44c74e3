#include "reports/report_tree_size.h"

#include <algorithm>
#include <pugixml.hpp>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

// What pugixml allocates: eight words for an element or a text, five for an attribute, in pages of
// 32 KiB that lose less than a hundredth to their heads and ends.
constexpr std::uint64_t kNodeBytes = 8 * sizeof(void*);
constexpr std::uint64_t kAttributeBytes = 5 * sizeof(void*);
constexpr std::uint64_t kPageBytes = 32 * 1024;
constexpr std::uint64_t kPageLossDivisor = 100;

/// A null character is not a blank.
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// Whether a text may follow the tag at the start of `part`, which reaches to the next "<". A ">"
/// inside an attribute lets it count one too many, never one too few.
bool MayHoldText(std::string_view part) {
  const auto end = part.find('>');
  return end != std::string_view::npos && !std::all_of(part.begin() + end + 1, part.end(), IsBlank);
}

/// Each "<" begins an element unless it ends one, and one text may follow the tag. In an encoding
/// of more than one byte "<" and ">" have zeros beside them, so that each tag has a text here; and
/// "</" need not be what it looks like.
std::uint64_t MostNodes(std::string_view text) {
  const bool isOfBytes = text.find('\0') == std::string_view::npos;
  std::uint64_t nodes = 0;
  for (auto tag = text.find('<'); tag != std::string_view::npos;) {
    const auto next = text.find('<', tag + 1);
    const std::string_view part = text.substr(tag, next - tag);
    if (!isOfBytes || !part.starts_with("</")) ++nodes;
    if (MayHoldText(part)) ++nodes;
    tag = next;
  }
  return nodes;
}

}  // namespace

std::uint64_t MostReportTextBytes(std::uint64_t fileBytes) {
  return fileBytes * (1 + sizeof(pugi::char_t));
}

std::uint64_t MostReportTreeBytes(std::string_view text) {
  const auto attributes = static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '='));
  const std::uint64_t nodes = MostNodes(text) * kNodeBytes + attributes * kAttributeBytes;
  const std::uint64_t tree = nodes + nodes / kPageLossDivisor + kPageBytes;
  // The file's own bytes are released before the tree grows.
  return text.size() * sizeof(pugi::char_t) + std::max<std::uint64_t>(text.size(), tree);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
