#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// The most that a file of this length and its copy in the parser's characters take together.
std::uint64_t MostReportTextBytes(std::uint64_t fileBytes);

/// The most that the parser takes at one time for this text in any encoding: the text, its copy in
/// the parser's characters and the tree. The text itself is included.
std::uint64_t MostReportTreeBytes(std::string_view text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
