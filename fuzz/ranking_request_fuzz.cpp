// Any text as the input of command 2: the directory is what precedes the first "?", and the days
// are the number that the C library reads after it. The bytes are 16-bit characters.
#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cwchar>
#include <limits>
#include <string>

#include "fuzz_input.h"
#include "reports/ranking_text.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using Fuzz::Require;

namespace {

std::int32_t LiteralNumber(const std::wstring& text) {
  using Limits = std::numeric_limits<std::int32_t>;
  return static_cast<std::int32_t>(
      std::clamp<long>(std::wcstol(text.c_str(), nullptr, 10), Limits::min(), Limits::max()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring input = Fuzz::Input(data, size).WideUntil(L'\xFFFF');
  const RankingRequest request = SplitRankingRequest(input);
  if (std::ranges::count(input, L'?') == 0) {
    Require(request.iconDirectory.empty() && request.days == 0);
    return 0;
  }
  Require(request.iconDirectory.find(L'?') == std::wstring::npos);
  Require(input.starts_with(request.iconDirectory + L'?'));
  Require(request.days == LiteralNumber(input.substr(request.iconDirectory.size() + 1)));
  return 0;
}
