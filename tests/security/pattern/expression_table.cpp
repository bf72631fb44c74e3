// Prints random expressions and texts with the results of Pattern, for expression_check.py. One
// line for each expression: "E", the expression, 1 if it is valid; then one for each of its texts:
// "T", the text, 1 if it matches. Texts are a point and the hexadecimal codes of their 16-bit
// characters, four digits each.

#include <cstdio>
#include <string>

#include "security/pattern/pattern.h"
#include "security/pattern/random_expressions.h"

namespace {

using namespace std::string_literals;
using Zq::Gantry::Security::CodeUnits;
using Zq::Gantry::Security::Pattern;

constexpr std::size_t kExpressions = 14'000;
constexpr std::size_t kTextsEach = 20;

void PrintRow(char kind, const std::wstring& text, bool result) {
  std::printf("%c .", kind);
  for (const char16_t unit : CodeUnits(text)) std::printf("%04x", static_cast<unsigned>(unit));
  std::printf(" %d\n", result ? 1 : 0);
}

}  // namespace

int main() {
  TestSupport::RandomExpressions expressions(/*seed=*/2,
                                             L"\r\t\0\x1f+]\x2028\x2029\xD800\xE4\xC4\xFFFF"s);
  for (std::size_t i = 0; i < kExpressions; ++i) {
    const TestSupport::RandomCase random = expressions.Next(kTextsEach);
    const auto pattern = Pattern::TryCompile(random.expression);
    PrintRow('E', random.expression, pattern.has_value());
    if (!pattern) continue;
    for (const std::wstring& text : random.texts) PrintRow('T', text, pattern->Matches(text));
  }
}
