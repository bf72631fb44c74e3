#include "base/json_text_guard.h"

#include "base/json_limits.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

std::size_t JsonTextGuard::Accept(std::string_view part) {
  for (std::size_t i = 0; i < part.size(); ++i) {
    const bool isAccepted = isInString_ ? AcceptInside(part[i]) : AcceptOutside(part[i]);
    if (!isAccepted) return i;
  }
  return part.size();
}

inline bool JsonTextGuard::AcceptInside(char c) {
  if (c == '\0') return false;
  if (isEscaped_) {
    isEscaped_ = false;
  } else if (c == '\\') {
    isEscaped_ = true;
  } else if (c == '"') {
    isInString_ = false;
    return true;
  }
  return ++stringBytes_ <= kLongestJsonStringBytes || Break();
}

inline bool JsonTextGuard::AcceptOutside(char c) {
  if (c == '"') {
    isInString_ = true;
    stringBytes_ = 0;
    isInExponent_ = false;
  } else if (c == 'e' || c == 'E') {
    isInExponent_ = true;
    exponentDigits_ = 0;
  } else if (isInExponent_ && c >= '0' && c <= '9') {
    return ++exponentDigits_ <= kMostExponentDigits || Break();
  } else if (c != '+' && c != '-') {
    isInExponent_ = false;
  }
  return c != '\0';
}

bool JsonTextGuard::Break() {
  hasBrokenLimit_ = true;
  return false;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
