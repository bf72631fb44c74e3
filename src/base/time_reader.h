#pragma once

#include <cstdint>

#include "base/calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// A local time and its instant: seconds since 1970 in UTC, -1 outside the calendar.
struct LocalTime {
  DateTime fields;
  std::int64_t instant = -1;
};

/// Reads the times of one file. The result is that of ParseDateTime and of InstantOf, to the last
/// field; reading many times of a few days takes little more than reading their digits. Used by one
/// thread, and only for as long as the zone cannot change: one reader for each file.
class TimeReader {
 public:
  /// `format` is one of those of date_text.h and is borrowed.
  explicit TimeReader(const char* format) : format_(format) {}

  [[nodiscard]] LocalTime Read(const char* text);
  /// The same for wide text. Only for kTimeStampFormat.
  [[nodiscard]] LocalTime Read(const wchar_t* text);

 private:
  const char* format_;
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
