#pragma once

#include <string>

namespace WattleafHost {

/// With two digits after the point and commas between thousands: "4,564.96". From 10^12 up in the
/// form "1.23e+15". "-" for NaN and infinity.
[[nodiscard]] std::string FigureText(double value);

/// For narrow places: one digit after the point below 100, none from there on ("4,565"), and from
/// 10^6 up in the form "1.2e+09". "0" is zero itself; a value above it that would print as zero is
/// "<0.1". "-" for NaN and infinity.
[[nodiscard]] std::string ShortFigureText(double value);

/// A length for an attribute of SVG: at most two digits after the point, without zeros at its end.
[[nodiscard]] std::string LengthText(double length);

}  // namespace WattleafHost
