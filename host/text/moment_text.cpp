#include "text/moment_text.h"

#include <array>
#include <string_view>

namespace WattleafHost {

namespace {

constexpr std::array<std::string_view, 12> kMonths = {
    "January", "February", "March",     "April",   "May",      "June",
    "July",    "August",   "September", "October", "November", "December"};

// In the form: 9 is any digit, s is the sign of the offset.
constexpr std::string_view kForm = "9999-99-99T99:99:99s99:99";

bool Fits(char letter, char form) {
  if (form == '9') return letter >= '0' && letter <= '9';
  if (form == 's') return letter == '+' || letter == '-';
  return letter == form;
}

/// 0 if the text is of another form.
std::size_t MonthOf(const std::string& iso) {
  if (iso.size() != kForm.size()) return 0;
  for (std::size_t i = 0; i < kForm.size(); ++i) {
    if (!Fits(iso[i], kForm[i])) return 0;
  }
  const auto digit = [&iso](std::size_t i) { return static_cast<std::size_t>(iso[i] - '0'); };
  const std::size_t month = digit(5) * 10 + digit(6);
  return month <= kMonths.size() ? month : 0;
}

}  // namespace

std::string LongMoment(const std::string& iso) {
  const std::size_t month = MonthOf(iso);
  if (month == 0) return iso;
  const std::string day = iso.substr(iso[8] == '0' ? 9 : 8, iso[8] == '0' ? 1 : 2);
  return day + " " + std::string(kMonths.at(month - 1)) + " " + iso.substr(0, 4) + ", " +
         iso.substr(11, 5) + " (UTC" + iso.substr(19) + ")";
}

std::string ShortMoment(const std::string& iso) {
  return MonthOf(iso) == 0 ? iso : iso.substr(0, 10) + " " + iso.substr(11, 5);
}

}  // namespace WattleafHost
