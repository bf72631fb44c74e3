// Any pattern or list against any value: matching must not fail a sanitizer, the path guard must
// agree with the expressions that it implements, and the judges of lists with the literal form of
// their rules. The bytes are 16-bit characters: a pattern or list, a line end, a value.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <regex>
#include <string>

#include "security/access/literal_rules.h"
#include "security/access/rule_judges.h"
#include "security/pattern/pattern.h"

using namespace Zq::Gantry::Security;

namespace {

std::wstring TextOf(const std::uint8_t* data, std::size_t size) {
  std::wstring text;
  for (std::size_t i = 0; i + 1 < size; i += 2) {
    text += static_cast<wchar_t>(data[i] | data[i + 1] << 8);
  }
  return text;
}

/// For short values only: the backtracking matcher needs stack for each character.
bool ExpressionsReject(const std::wstring& value) {
  static const std::wregex shape(LR"(^((?:[\w]\:|\\)|(http[s]?\:)|(\%[\(|\w|\)]+\%))+)");
  static const std::wregex traversal(LR"(((\/+)?\.\.(\/+)?))");
  return std::regex_search(value.c_str(), shape) && std::regex_search(value.c_str(), traversal);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::wstring text = TextOf(data, size);
  const std::size_t end = std::min(text.find(L'\n'), text.size());
  const std::wstring pattern = text.substr(0, end);
  const std::wstring value = text.substr(std::min(end + 1, text.size()));

  const bool isRejected = IsClimbingPath(value);
  if (value.size() < 200 && isRejected != ExpressionsReject(value)) std::abort();
  const auto compiled = Pattern::TryCompile(pattern);
  const bool isMatch = compiled && compiled->Matches(value);
  if (PassesRegex(pattern, value) != (isMatch && !isRejected)) std::abort();

  const auto [isClimbing, isContained, isBegun] = TestSupport::LiteralAnswers(pattern, value);
  if (isRejected != isClimbing) std::abort();
  if (IsContainedInList(pattern, value) != isContained) std::abort();
  if (BeginsWithFromList(pattern, value) != isBegun) std::abort();
  return 0;
}
