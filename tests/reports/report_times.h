#pragma once

#include "base/date_text.h"

namespace TestSupport {

/// "2026-11-14:02:10:46", as reports and the store spell it.
inline Zq::Gantry::Server::Services::Wattleaf::DateTime At(const char* text) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  DateTime time;
  return ParseDateTime(time, text, kTimeStampFormat);
}

}  // namespace TestSupport
