#pragma once

#include <stdlib.h>
#include <time.h>

#include <algorithm>
#include <ostream>
#include <string>

// The zones of the tests that change the zone of their process. That is not possible on Windows.
namespace TestSupport {

/// A zone and the years that its tests cover.
struct ZoneYears {
  const char* zone;
  int firstYear;
  int lastYear;
  /// Whether the clocks go forward by a day, over the date line.
  bool skipsADay = false;
};

/// Found by the test library, which would print the bytes.
inline void PrintTo(const ZoneYears& years, std::ostream* stream) { *stream << years.zone; }

// Two years or more of each, chosen for their clock changes.
inline constexpr ZoneYears kZones[] = {
    {"UTC", 2024, 2025},
    {"Europe/Berlin", 2024, 2025},
    {"America/New_York", 2024, 2025},
    // Clocks that change at 00:01, and an offset of 3:30.
    {"America/St_Johns", 2010, 2011},
    // Daylight time of half an hour, and of two hours.
    {"Australia/Lord_Howe", 2024, 2025},
    {"Antarctica/Troll", 2024, 2025},
    // Negative daylight time, and a year of summer time.
    {"Europe/Dublin", 2024, 2025},
    {"Europe/London", 1970, 1972},
    // Summer time without the month of Ramadan.
    {"Africa/Casablanca", 2019, 2020},
    {"Africa/Cairo", 2014, 2014},
    {"Asia/Gaza", 2024, 2025},
    // South of the equator.
    {"Australia/Adelaide", 2024, 2025},
    {"Pacific/Auckland", 2024, 2025},
    {"Pacific/Chatham", 2024, 2025},
    {"America/Santiago", 2024, 2025},
    {"America/Sao_Paulo", 2018, 2019},
    {"America/Asuncion", 2024, 2025},
    // Without clock change; offsets of a half and of three quarters of an hour.
    {"Asia/Tokyo", 2024, 2025},
    {"Asia/Kolkata", 2024, 2025},
    {"Asia/Kathmandu", 1985, 1986},
    {"Australia/Eucla", 2008, 2009},
    {"America/Phoenix", 2024, 2025},
    {"Pacific/Marquesas", 2024, 2025},
    // Clocks that change at midnight.
    {"America/Havana", 2024, 2025},
    {"Asia/Beirut", 2024, 2025},
    {"Asia/Tehran", 2021, 2022},
    {"Atlantic/Azores", 2024, 2025},
    // Another standard offset from some day on, by whole hours, half hours and a day.
    {"Europe/Moscow", 2010, 2014},
    {"Europe/Istanbul", 2015, 2016},
    {"Europe/Volgograd", 2018, 2020},
    {"America/Caracas", 2007, 2007},
    {"America/Nuuk", 2023, 2024},
    {"Asia/Pyongyang", 2015, 2018},
    {"Antarctica/Casey", 2009, 2012},
    {"Pacific/Apia", 2011, 2012, /*skipsADay=*/true},
    {"Pacific/Kwajalein", 1993, 1993, /*skipsADay=*/true},
    {"Africa/Monrovia", 1971, 1972},
};

/// Sets the zone of this process.
inline void UseZone(const char* zone) {
  setenv("TZ", zone, /*overwrite=*/1);
  tzset();
}

/// The zone of a parameter of the test library, as a part of the name of a test.
struct NameOfZone {
  template <typename Parameter>
  std::string operator()(const Parameter& parameter) const {
    std::string name = parameter.param.zone;
    std::replace(name.begin(), name.end(), '/', '_');
    return name;
  }
};

}  // namespace TestSupport
