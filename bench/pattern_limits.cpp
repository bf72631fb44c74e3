// What the standard library's matchers bear on half a megabyte of stack, and how long hostile
// values take: the measurements behind the limits of expressions. For Wine, where a stack that
// overflows ends its thread and not the process.
//
//   pattern_limits [SIZE]
//
// SIZE, 1,000,000 by default, is how many letters the values have.
#include <chrono>
#include <cstdio>
#include <functional>
#include <regex>
#include <string>

#include "security/access/pattern_match.h"
#include "support/small_stack.h"

namespace {

using TestSupport::FinishesOnASmallStack;
using Zq::Gantry::Security::MatchesPattern;

constexpr auto kWithoutBackTracking =
    std::regex_constants::ECMAScript | std::regex_constants::__polynomial;

std::size_t mostLetters = 1'000'000;

std::wstring Repeat(const std::wstring& part, std::size_t times) {
  std::wstring text;
  while (times-- > 0) text += part;
  return text;
}

/// The largest size that `tryWith` comes to its end with; it does with 1.
void PrintMost(const char* what, const std::function<void(std::size_t)>& tryWith) {
  std::size_t good = 1;
  std::size_t bad = mostLetters;
  while (bad - good > 1) {
    const std::size_t middle = good + (bad - good) / 2;
    (FinishesOnASmallStack([&] { tryWith(middle); }) ? good : bad) = middle;
  }
  std::printf("%-60s %9zu\n", what, good);
}

void PrintSeconds(const char* what, const std::function<void()>& call) {
  const auto start = std::chrono::steady_clock::now();
  call();
  const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
  std::printf("%-60s %7.2f s\n", what, time.count());
}

void PrintStackLimits() {
  PrintMost("letters in a row that compile",
            [](std::size_t size) { std::wregex(std::wstring(size, L'a'), kWithoutBackTracking); });
  PrintMost("groups inside groups that compile", [](std::size_t size) {
    std::wregex(Repeat(L"(", size) + L"a" + Repeat(L")", size), kWithoutBackTracking);
  });
  PrintMost("characters for .* with back-tracking", [](std::size_t size) {
    std::regex_match(std::wstring(size, L'a'), std::wregex(L".*"));
  });
  PrintMost("drive letters for the path guard's expression", [](std::size_t size) {
    const std::wregex shape(LR"(^((?:[\w]\:|\\)|(http[s]?\:)|(\%[\(|\w|\)]+\%))+)");
    std::regex_search(Repeat(L"C:", size), shape);
  });
}

void PrintNestedLoops(std::size_t depth, const char* what) {
  const std::wregex loops(Repeat(L"(", depth) + L"a" + Repeat(L")*", depth) + L"\\1b");
  PrintSeconds(what, [&loops] { std::regex_match(L"a", loops); });
}

void PrintTimes() {
  PrintSeconds("(a+)+b against that many letters",
               [] { MatchesPattern(L"(a+)+b", std::wstring(mostLetters, L'a')); });
  PrintSeconds("[a-z]+ against five times as many",
               [] { MatchesPattern(L"[a-z]+", std::wstring(5 * mostLetters, L'a')); });
  PrintSeconds("[^ and 63,000 times \\W and ]* against that many", [] {
    MatchesPattern(L"[^" + Repeat(L"\\W", 63'000) + L"]*", std::wstring(mostLetters, L'a'));
  });
}

void PrintNestedLoopTimes() {
  PrintNestedLoops(6, "6 nested loops, a back-reference, one letter, no patience");
  PrintNestedLoops(7, "7");
  PrintNestedLoops(8, "8");
}

}  // namespace

int main(int count, char** arguments) {
  if (count > 1) mostLetters = std::stoul(arguments[1]);
  PrintStackLimits();
  PrintTimes();
  // These take their time at any size.
  if (count == 1) PrintNestedLoopTimes();
}
