#pragma once

#include "base/date_text.h"
#include "base/time_reader.h"

namespace TestSupport {

/// A time in the format of reports and of the store, "2026-11-14:02:10:46".
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DateTime At(const char* text) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  DateTime time;
  return ParseDateTime(time, text, kTimeStampFormat);
}

/// The same with its instant.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::LocalTime TimeAt(const char* text) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  return TimeReader(kTimeStampFormat).Read(text);
}

}  // namespace TestSupport
