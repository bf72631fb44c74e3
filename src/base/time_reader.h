#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/calendar.h"
#include "base/date_run.h"
#include "base/local_time.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Reads the times of one file. The result is that of ParseDateTime and of InstantOf, to the last
/// field; reading many times of a few days takes little more than reading their digits. Used by one
/// thread, and only for as long as the zone cannot change: one reader for each file. It is some
/// 24 KB large and asks the C library nothing before the first time.
class TimeReader {
 public:
  /// `format` is one of those of date_text.h.
  explicit TimeReader(const char* format);

  [[nodiscard]] LocalTime Read(const char* text);
  /// The same for wide text. Only for kTimeStampFormat.
  [[nodiscard]] LocalTime Read(const wchar_t* text);

 private:
  /// A part of a local date, as written in the texts.
  struct Stretch {
    enum class State : std::int8_t {
      kReadOnce,
      kEven,    // Every time of day in it is `base` and what is written.
      kUneven,  // The clock changes in it, or part of it moves to the next day.
    };
    std::int64_t key = 0;  // Date and part; 0 for an empty entry.
    LocalTime base;        // That of its first text, less the time of day as written.
    State state = State::kReadOnce;
  };

  static constexpr std::size_t kStretchesOfALength = 128;
  static constexpr std::array<std::int32_t, 3> kStretchSeconds{23 * 3600, 1800, 60};

  /// Sets `time` to the time in `text`, which is not null. False if it is left to std::get_time:
  /// never for narrow text.
  template <typename Char>
  [[nodiscard]] bool TryRead(const Char* text, char separator, LocalTime& time);
  /// Sets `time` to the time whose six fields of date and time of day are `written`.
  void Convert(const DateTime& written, LocalTime& time);
  /// The same for plain fields, whose time of day is zero if the format has none. False outside the
  /// calendar.
  [[nodiscard]] bool TryConvertPlain(const DateTime& written, LocalTime& time);
  [[nodiscard]] bool TryAddToStretch(const DateTime& written, LocalTime& time);
  [[nodiscard]] static bool IsEven(const LocalTime& base, DateTime written, std::int32_t length);

  char separator_;  // Between date and time of day; 0 for a date alone.
  std::array<std::array<Stretch, kStretchesOfALength>, kStretchSeconds.size()> stretches_;
  DateRun dates_;  // Of a format without a time of day.
};

}  // namespace Zq::Gantry::Server::Services::Wattleaf
