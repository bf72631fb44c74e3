#pragma once

#include "base/date_text.h"
#include "base/time_reader.h"
#include "reports/row_time.h"

namespace TestSupport {

/// A time in the format of reports and of the store, "2026-11-14:02:10:46".
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::DateTime At(const char* text) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  DateTime time;
  return ParseDateTime(time, text, kTimeStampFormat);
}

/// The same as the time of a row.
[[nodiscard]] inline Zq::Gantry::Server::Services::Wattleaf::RowTime TimeAt(const char* text) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  return RowTime(TimeReader(kTimeStampFormat).Read(text));
}

}  // namespace TestSupport
