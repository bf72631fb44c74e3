#include "reports/stored_row_size.h"

#include <numeric>
#include <string_view>

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::string_view kRowWithoutNames =
    R"({"Name":"","DisplayName":"","TimeStamp":"2026-11-14:02:10:46",)"
    R"("TotalEnergy":-9223372036854775808},)";

/// As RapidJSON's writer spells a byte inside a string.
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

std::size_t WrittenBytes(std::string_view text) {
  return std::accumulate(text.begin(), text.end(), std::size_t{0},
                         [](std::size_t sum, char c) { return sum + WrittenBytes(c); });
}

}  // namespace

std::size_t StoredRowBytes(const PowerLogRecord& row) {
  return kRowWithoutNames.size() + WrittenBytes(row.Name) + WrittenBytes(row.DisplayName);
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
