// Measures the plain and the hostile expressions of docs/rules.md, and the longest text that
// matches the expressions whose memory grows with the text.
#include <cstdio>
#include <ctime>
#include <string>

#include "security/pattern/hostile_patterns.h"
#include "security/pattern/pattern.h"

namespace {

using namespace TestSupport;
using Zq::Gantry::Security::Pattern;

/// Processor time natively; elapsed time under Windows, whose C library counts that in clock().
double MillisecondsSince(std::clock_t begin) {
  return static_cast<double>(std::clock() - begin) * 1000 / CLOCKS_PER_SEC;
}

/// Prints the times of one match and returns whether it matches.
bool PrintMatch(const char* label, const std::wstring& expression, const std::wstring& text) {
  const auto begin = std::clock();
  const auto pattern = Pattern::TryCompile(expression);
  const double compiling = MillisecondsSince(begin);
  const auto compiled = std::clock();
  const bool isMatch = pattern && pattern->Matches(text);
  std::printf("%-44s %-5s compiled in %7.2f ms, matched in %7.2f ms\n", label,
              isMatch ? "yes" : "no", compiling, MillisecondsSince(compiled));
  return isMatch;
}

/// Prints the times of one match and returns whether the result is `expected`.
bool PrintAndCheck(const char* label, const std::wstring& expression, const std::wstring& text,
                   bool expected) {
  const bool isMatch = PrintMatch(label, expression, text);
  if (isMatch != expected) std::printf("  wrong: expected %s\n", expected ? "yes" : "no");
  return isMatch == expected;
}

std::wstring Words(int count) {
  std::wstring words = L"word1000";
  for (int i = 1; i < count; ++i) words += L"|word" + std::to_wstring(1000 + i);
  return words;
}

bool PrintPlainExpressions() {
  constexpr wchar_t kHostName[] = L"(?:[a-z0-9](?:[a-z0-9-]{0,61}[a-z0-9])?\\.){1,126}[a-z]{2,63}";
  bool isRight = PrintAndCheck("1,2,3", L"\\d+(?:,\\d+){0,499}", L"1,2,3", true);
  isRight &= PrintAndCheck("www.example.com", kHostName, L"www.example.com", true);
  isRight &= PrintAndCheck("1,300 words, the last one", Words(1300), L"word2299", true);
  isRight &= PrintAndCheck(".{0,10000} on abc", L".{0,10000}", L"abc", true);
  isRight &= PrintAndCheck("[^<>]{0,9000} on 6,000 letters", L"[^<>]{0,9000}",
                           std::wstring(6000, L'a'), true);
  isRight &= PrintAndCheck("foo(?=\\bbar)bar on foobar", L"foo(?=\\bbar)bar", L"foobar", false);
  isRight &= PrintAndCheck("a(?=^b)b on ab", L"a(?=^b)b", L"ab", false);
  isRight &= PrintAndCheck(".* on 10,000,000 letters", L".*", std::wstring(10'000'000, L'a'), true);
  isRight &= PrintAndCheck("(.*)\\1 on 1,000,000 letters", L"(.*)\\1",
                           std::wstring(1'000'000, L'a'), true);
  return isRight;
}

/// Prints the largest number of letters that matches; one letter matches.
void PrintLongest(const char* label, const std::wstring& expression) {
  const auto pattern = Pattern::TryCompile(expression);
  std::size_t good = 1;
  std::size_t bad = 10'000'000;
  while (bad - good > 1) {
    const std::size_t middle = good + (bad - good) / 2;
    (pattern->Matches(std::wstring(middle, L'a')) ? good : bad) = middle;
  }
  std::printf("%-44s %zu letters match\n", label, good);
}

}  // namespace

int main(int count, char** arguments) {
  const std::size_t letters = count > 1 ? std::stoul(arguments[1]) : 1'000'000;
  bool isRight = PrintPlainExpressions();
  if (count == 1) {
    PrintLongest("(?:a|b)*", L"(?:a|b)*");
    PrintLongest("(a|b)*", L"(a|b)*");
    PrintLongest("(?:(?!--).)*", L"(?:(?!--).)*");
  }
  const std::wstring text(letters, L'a');
  const auto begin = std::clock();
  for (const auto& [label, expression] : HostilePatterns()) {
    // A short text matches some of them.
    if (count > 1) {
      PrintMatch(label, expression, text);
    } else {
      isRight &= PrintAndCheck(label, expression, text, false);
    }
  }
  std::printf("all hostile ones: %.1f s\n", MillisecondsSince(begin) / 1000);
  return isRight ? 0 : 1;
}
