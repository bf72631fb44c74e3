// Stand-in: the command lines that the tool understands.

#include "tool_request.h"

namespace Standin {

namespace {

bool IsCount(const std::wstring& text) {
  return !text.empty() && text.size() <= 9 &&
         text.find_first_not_of(L"0123456789") == std::wstring::npos;
}

}  // namespace

std::optional<ToolRequest> TryReadRequest(const std::vector<std::wstring>& arguments) {
  if (arguments.size() < 4 || arguments[1] != L"/OUTPUT" || arguments.back() != L"/XML" ||
      arguments[2].empty()) {
    return std::nullopt;
  }
  const std::wstring& file = arguments[2];
  if (arguments[0] == L"/SRUMUTIL" && arguments.size() == 4) {
    return ToolRequest{ToolReport::kApplicationEnergy, file};
  }
  if (arguments[0] == L"/ENERGY" && arguments.size() == 6 && arguments[3] == L"/DURATION" &&
      IsCount(arguments[4])) {
    return ToolRequest{ToolReport::kEnergyProblems, file};
  }
  return std::nullopt;
}

}  // namespace Standin
