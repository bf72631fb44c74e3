#include "base/time_reader.h"

#include "base/date_text.h"
#include "base/local_calendar.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

LocalTime TimeReader::Read(const char* text) {
  LocalTime time;
  ParseDateTime(time.fields, text, format_);
  time.instant = InstantOf(time.fields);
  return time;
}

LocalTime TimeReader::Read(const wchar_t* text) {
  LocalTime time;
  ParseWideDateTime(time.fields, text);
  time.instant = InstantOf(time.fields);
  return time;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
