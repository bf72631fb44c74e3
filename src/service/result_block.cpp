#include "service/result_block.h"

#include <cstdlib>

#include "service/command_table.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

bool HandOver(const std::wstring& result, wchar_t** output) {
  const std::size_t chars = result.size() + 1;
  if (output == nullptr || result.empty() || chars > kLargestResultChars) return false;

  auto* block = static_cast<wchar_t*>(std::malloc(chars * sizeof(wchar_t)));
  if (block == nullptr) return false;
  result.copy(block, result.size());
  block[result.size()] = L'\0';
  *output = block;
  return true;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
