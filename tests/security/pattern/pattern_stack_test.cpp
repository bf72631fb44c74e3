#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "security/pattern/hostile_patterns.h"
#include "security/pattern/pattern.h"
#include "support/small_stack.h"

namespace Zq::Gantry::Security {
namespace {

using namespace TestSupport;

using Clock = std::chrono::steady_clock;

// Measured: less than a second each on an idle machine. Without limits a match would take minutes
// to years.
constexpr double kLongestSeconds = 20;

TEST(PatternStack, HostilePatternsEndInTimeOnHalfAMegabyteOfStack) {
  const std::wstring text(1'000'000, L'a');
  for (const auto& [label, expression] : HostilePatterns()) {
    SCOPED_TRACE(label);
    bool isValid = false;
    const auto begin = Clock::now();
    EXPECT_TRUE(FinishesOnASmallStack([&, &hostile = expression] {
      const auto pattern = Pattern::TryCompile(hostile);
      isValid = pattern.has_value();
      if (pattern) static_cast<void>(pattern->Matches(text));
    }));
    EXPECT_TRUE(isValid);
    EXPECT_LT(std::chrono::duration<double>(Clock::now() - begin).count(), kLongestSeconds);
  }
}

TEST(PatternStack, InvalidPatternsOfEveryLengthAreRefusedOnHalfAMegabyteOfStack) {
  for (const wchar_t* part : {L"(", L"(?:", L"(?=", L"[", L"(a|", L"\\c(", L"(){"}) {
    for (const std::size_t times : {300U, 30'000U, 3'000'000U}) {
      bool isValid = true;
      EXPECT_TRUE(FinishesOnASmallStack(
          [&] { isValid = Pattern::TryCompile(Repeat(part, times)).has_value(); }));
      EXPECT_FALSE(isValid);
    }
  }
}

}  // namespace
}  // namespace Zq::Gantry::Security
