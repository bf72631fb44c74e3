// The memory that matching takes, and what happens when it runs out. A program of its own, because
// it replaces operator new of the whole program.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string>

#include "security/pattern/hostile_patterns.h"
#include "security/pattern/pattern.h"

namespace {

// The number of allocations that succeed before one fails; -1 for no failure.
long long remaining = -1;

std::size_t inUse = 0;
std::size_t peak = 0;

/// Each block has its size before it.
constexpr std::size_t kHead = alignof(std::max_align_t);

void* TryAllocate(std::size_t size) {
  if (remaining == 0) {
    remaining = -1;
    return nullptr;
  }
  if (remaining > 0) --remaining;
  auto* head = static_cast<std::size_t*>(std::malloc(size + kHead));
  if (head == nullptr) return nullptr;
  *head = size;
  inUse += size;
  peak = std::max(peak, inUse);
  return reinterpret_cast<char*>(head) + kHead;
}

void Deallocate(void* block) {
  if (block == nullptr) return;
  auto* head = reinterpret_cast<std::size_t*>(static_cast<char*>(block) - kHead);
  inUse -= *head;
  std::free(head);
}

}  // namespace

void* operator new(std::size_t size) {
  if (void* block = TryAllocate(size)) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return TryAllocate(size); }
void operator delete(void* block) noexcept { Deallocate(block); }
void operator delete(void* block, std::size_t) noexcept { Deallocate(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { Deallocate(block); }

namespace Zq::Gantry::Security {
namespace {

using namespace std::string_literals;
using TestSupport::Repeat;

constexpr std::size_t kMebibyte = 1024 * 1024;

/// The peak of memory that compiling and matching take, without the memory in use before.
std::size_t PeakOf(const std::wstring& expression, const std::wstring& text) {
  // The first call allocates memory that stays.
  static_cast<void>(Pattern::TryCompile(L"."));
  const std::size_t before = inUse;
  peak = inUse;
  {
    const auto pattern = Pattern::TryCompile(expression);
    if (pattern) static_cast<void>(pattern->Matches(text));
  }
  EXPECT_EQ(inUse, before);
  return peak - before;
}

TEST(PatternMemory, HostilePatternsTakeAtMost64Mebibytes) {
  const std::wstring text(1'000'000, L'a');
  for (const std::wstring& expression :
       {L"(a|b)*"s, L"(?:a|b)*"s, L"(a+)+b"s, Repeat(L"(a?)", 3000) + L".*x",
        L"(?:" + Repeat(L"(a)|", 3000) + L"b)*x", L"(?:" + Repeat(L"(a)|", 110) + L"b)*x",
        Repeat(L"(", 199) + L"a" + Repeat(L")*", 199) + L"x"}) {
    EXPECT_LE(PeakOf(expression, text), 64 * kMebibyte) << expression.size();
  }
  EXPECT_GT(PeakOf(L"(a|b)*", text), 32 * kMebibyte) << "PCRE2 must allocate here";
}

TEST(PatternMemory, CompilingTakesAtMost16Mebibytes) {
  for (const std::wstring& expression :
       {Repeat(L"a", kMostExpressionChars), Repeat(L"()", 50'000),
        L"[" + Repeat(L"\\W", 49'999) + L"]", Repeat(L"a*", 50'000),
        std::wstring(L"((a{1000}){1000}){1000}"), Repeat(L"(", 100'000)}) {
    EXPECT_LE(PeakOf(expression, L""), 16 * kMebibyte) << expression.size();
  }
}

TEST(PatternMemory, AnExpressionBeyondTheLimitAllocatesNothing) {
  EXPECT_EQ(PeakOf(std::wstring(kMostExpressionChars + 1, L'a'), L""), 0U);
}

TEST(PatternMemory, RunningOutOfMemoryThrowsBadAlloc) {
  // Some allocations happen only at the end of a long match.
  const std::wstring text(20'000, L'a');
  int steps = 0;
  for (bool isDone = false; !isDone; ++steps) {
    remaining = steps;
    bool isAnswered = false;
    bool isMatch = false;
    try {
      const auto pattern = Pattern::TryCompile(L"(a|b)+(?=$)|[[:digit:]]\\1");
      isMatch = pattern && pattern->Matches(text);
      isAnswered = true;
    } catch (const std::bad_alloc&) {
    }
    isDone = remaining != -1;
    remaining = -1;
    EXPECT_EQ(isAnswered, isDone) << "at allocation " << steps;
    EXPECT_EQ(isMatch, isDone) << "at allocation " << steps;
  }
  EXPECT_GT(steps, 20);
}

}  // namespace
}  // namespace Zq::Gantry::Security
