#pragma once

#include <string>

#include "security/pattern/pattern.h"

namespace TestSupport {

[[nodiscard]] inline bool IsValid(const std::wstring& expression) {
  return Zq::Gantry::Security::Pattern::TryCompile(expression).has_value();
}

/// False for an invalid expression.
[[nodiscard]] inline bool Matches(const std::wstring& expression, const std::wstring& text) {
  const auto pattern = Zq::Gantry::Security::Pattern::TryCompile(expression);
  return pattern && pattern->Matches(text);
}

}  // namespace TestSupport
