#pragma once

// Stand-in: the command lines that the tool understands. Portable, so that it is tested natively.

#include <optional>
#include <string>
#include <vector>

namespace Standin {

enum class ToolReport { kApplicationEnergy, kEnergyProblems };

struct ToolRequest {
  ToolReport report;
  std::wstring file;
};

/// Reads the arguments after the program's name. Understands exactly
///   /SRUMUTIL /OUTPUT <file> /XML
///   /ENERGY /OUTPUT <file> /DURATION <seconds> /XML
/// in this case and this order, and nothing else.
[[nodiscard]] std::optional<ToolRequest> TryReadRequest(const std::vector<std::wstring>& arguments);

}  // namespace Standin
