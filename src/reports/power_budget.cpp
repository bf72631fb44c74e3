#include "reports/power_budget.h"

#include <algorithm>
#include <numeric>
#include <pugixml.hpp>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// A row with its comma, with empty names and the longest energy.
constexpr std::string_view kRowWithoutNames =
    R"({"Name":"","DisplayName":"","TimeStamp":"2026-11-14:02:10:46",)"
    R"("TotalEnergy":-9223372036854775808},)";

// What pugixml allocates: eight words for an element or a text, five for an attribute, in pages of
// 32 KiB of which less than a hundredth is lost to headers and unused ends.
constexpr std::uint64_t kNodeBytes = 8 * sizeof(void*);
constexpr std::uint64_t kAttributeBytes = 5 * sizeof(void*);
constexpr std::uint64_t kPageBytes = std::uint64_t{32} * 1024;
constexpr std::uint64_t kPageLossDivisor = 100;

/// The bytes that RapidJSON's writer needs for one byte of a string.
std::size_t WrittenBytes(char c) {
  switch (c) {
    case '"':
    case '\\':
    case '\b':
    case '\f':
    case '\n':
    case '\r':
    case '\t':
      return 2;
    default:
      return static_cast<unsigned char>(c) < 0x20 ? std::string_view("\\u0000").size() : 1;
  }
}

/// A null character does not count as blank.
bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// Whether a text may follow the tag at the start of `part`, which ends before the next "<". A ">"
/// inside an attribute makes the count one too high, never too low.
bool MayHoldText(std::string_view part) {
  const auto end = part.find('>');
  return end != std::string_view::npos && !std::all_of(part.begin() + end + 1, part.end(), IsBlank);
}

/// Counts in runs that fit a byte, so that the compiler counts many bytes at once.
std::uint64_t CountOf(char wanted, std::string_view text) {
  constexpr std::size_t kRun = 255;
  std::uint64_t count = 0;
  for (; !text.empty(); text.remove_prefix(std::min(kRun, text.size()))) {
    std::uint8_t inRun = 0;
    for (const char c : text.substr(0, kRun))
      inRun = static_cast<std::uint8_t>(inRun + (c == wanted));
    count += inRun;
  }
  return count;
}

/// Each "<" begins an element unless it begins an end tag, and one text may follow the tag. An
/// encoding with more than one byte per character has zero bytes next to "<" and ">". Then every
/// tag counts as followed by a text, and "</" does not reliably begin an end tag.
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

std::size_t WrittenBytes(std::string_view text) {
  return std::accumulate(text.begin(), text.end(), std::size_t{0},
                         [](std::size_t sum, char c) { return sum + WrittenBytes(c); });
}

std::size_t StoredRowBytes(std::size_t nameBytes, std::size_t displayNameBytes) {
  return kRowWithoutNames.size() + nameBytes + displayNameBytes;
}

std::uint64_t MostReportTextBytes(std::uint64_t fileBytes) {
  return fileBytes * (1 + sizeof(pugi::char_t));
}

std::uint64_t MostReportTreeBytes(std::string_view text) {
  const std::uint64_t nodes = MostNodes(text) * kNodeBytes + CountOf('=', text) * kAttributeBytes;
  const std::uint64_t tree = nodes + nodes / kPageLossDivisor + kPageBytes;
  // The parser releases the file's own bytes before the tree grows.
  return text.size() * sizeof(pugi::char_t) + std::max<std::uint64_t>(text.size(), tree);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
