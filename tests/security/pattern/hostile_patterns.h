#pragma once

#include <string>
#include <vector>

#include "security/pattern/expression_text.h"

namespace TestSupport {

struct HostilePattern {
  const char* label;
  std::wstring expression;
};

/// Expressions that take as much time, memory or stack as possible to match many letters "a". All
/// are valid and within the limits of an expression.
[[nodiscard]] inline std::vector<HostilePattern> HostilePatterns() {
  const auto nested = [](const std::wstring& open, const std::wstring& close) {
    return Repeat(open, 199) + L"a" + Repeat(close, 199);
  };
  return {
      {"(a+)+b", L"(a+)+b"},
      {"(a|b)*", L"(a|b)*"},
      {"(a*)*b", L"(a*)*b"},
      {"three loops, a reference", L"((a*)*)*\\1b"},
      {"eight loops, a reference", L"((((((((a*)*)*)*)*)*)*)*)*\\1b"},
      {".*.*.*x", L".*.*.*x"},
      {".*[^x]*x", L".*[^x]*x"},
      {"(.*)\\1x", L"(.*)\\1x"},
      {"(.*)(.*)\\1\\2x", L"(.*)(.*)\\1\\2x"},
      {"(.*)\\1*x", L"(.*)\\1*x"},
      {"a counted reference", L"(a).*\\1{30000}x"},
      {"a counted empty reference", L".*()\\1{65535}x"},
      {"a repeated empty reference", L"(?:()\\1*)*x"},
      {".*a{1000,}x", L".*a{1000,}x"},
      {".*a{30000}x", L".*a{30000}x"},
      {".*a{60}x", L".*a{60}x"},
      {".* and many letters", L".*" + std::wstring(20'000, L'a') + L"x"},
      {".* and a counted sequence", L".*(?:aaaaaaaaaa){1000}x"},
      {".* and counted empty groups", L".*(?:){5000}x"},
      {".* and many look-aheads", L".*" + Repeat(L"(?=a)", 3000) + L"x"},
      {"many groups and .*", Repeat(L"(a?)", 3000) + L".*x"},
      {"many loops", Repeat(L"a*", 3000) + L"x"},
      {"many lazy loops", Repeat(L"a*?", 3000) + L"x"},
      {"many optional letters", Repeat(L"a?", 5000) + L"x"},
      {"many groups that are loops", Repeat(L"(?:a*)*", 1000) + L"x"},
      {"a loop of many look-aheads", L"(?:" + Repeat(L"(?=a*$)", 1000) + L"a)*"},
      {"a loop of a negative look-ahead", L"(?:(?!.*b)a)*x"},
      {"a loop of a capturing look-ahead", L"(?:(?=(.*))a)*x"},
      {"a loop of alternatives", L"(?:" + Repeat(L"a|", 5000) + L"b)*x"},
      {"a loop of optional alternatives", L"(?:" + Repeat(L"a?|", 4000) + L"b)*x"},
      {"a loop of groups", L"(?:" + Repeat(L"(a)|", 3000) + L"b)*x"},
      {"a loop of long words", L"(?:a{60}|a{61}|a{62})*x"},
      {"a counted loop counted again", L"(?:a{0,90}){100}x"},
      {"long words", Repeat(std::wstring(1200, L'a') + L"|", 15) + L"b"},
      {"nested groups", nested(L"(", L")")},
      {"nested loops", nested(L"(", L")*") + L"x"},
      {"nested look-aheads", nested(L"(?=", L")") + L"a*x"},
      {"nested negative look-aheads", nested(L"(?!", L")") + L"a*x"},
      {"a class of many names", L"[^b" + Repeat(L"\\W", 49'000) + L"]*x"},
      {"a class of many ranges", ScatteredClass(150) + L"*x"},
      {"a class of very many ranges", L".*" + ScatteredClass(4000) + L"*x"},
  };
}

}  // namespace TestSupport
