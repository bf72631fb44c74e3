#include "base/guarded_json_stream.h"

#include "base/json_limits.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

void GuardedJsonStream::Follow(Ch c) {
  if (inString_) {
    FollowString(c);
  } else if (c == '"') {
    inString_ = true;
    stringBytes_ = 0;
    inExponent_ = false;
  } else {
    FollowNumber(c);
  }
  if (stream_.Tell() > limitBytes_) refused_ = true;
}

void GuardedJsonStream::FollowString(Ch c) {
  if (escaped_) {
    escaped_ = false;
  } else if (c == '\\') {
    escaped_ = true;
  } else if (c == '"') {
    inString_ = false;
    return;
  }
  if (++stringBytes_ > kLongestJsonStringBytes) refused_ = true;
}

void GuardedJsonStream::FollowNumber(Ch c) {
  if (c == 'e' || c == 'E') {
    inExponent_ = true;
    exponentDigits_ = 0;
  } else if (inExponent_ && IsDigit(c)) {
    // One digit early: the parser uses a digit as soon as it has taken it.
    if (++exponentDigits_ == kMostExponentDigits && IsDigit(stream_.Peek())) refused_ = true;
  } else if (c != '+' && c != '-') {
    inExponent_ = false;
  }
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
