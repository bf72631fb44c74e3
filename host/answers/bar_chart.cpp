#include "answers/bar_chart.h"

#include <algorithm>
#include <cmath>

#include "text/printable.h"

namespace WattleafHost {

namespace {

constexpr const char* kFullBlock = "\xE2\x96\x88";
constexpr const char* kHalfBlock = "\xE2\x96\x8C";

struct Widths {
  std::size_t label = 0;
  std::size_t value = 0;
};

Widths Measure(const Series& series) {
  Widths widths;
  for (const SeriesEntry& entry : series.entries) {
    widths.label = std::max(widths.label, CharacterCount(entry.label));
    widths.value = std::max(widths.value, TwoDigits(entry.value).size());
  }
  return widths;
}

double LargestValue(const Series& series) {
  double largest = 0.0;
  for (const SeriesEntry& entry : series.entries) largest = std::max(largest, entry.value);
  return largest;
}

std::string Bar(double value, double largest, std::size_t longestChars) {
  if (value <= 0.0) return {};
  const double share = value / largest;
  const double halves = std::round(share * 2.0 * static_cast<double>(longestChars));
  const auto count = std::max<std::size_t>(1, static_cast<std::size_t>(halves));
  std::string bar;
  for (std::size_t i = 0; i < count / 2; ++i) bar += kFullBlock;
  if (count % 2 != 0) bar += kHalfBlock;
  return bar;
}

}  // namespace

std::string BarChart(const Series& series, std::size_t longestBarChars) {
  const Widths widths = Measure(series);
  const double largest = LargestValue(series);
  std::string chart;
  for (const SeriesEntry& entry : series.entries) {
    chart += "  " + PadLeft(OneLine(entry.label, widths.label), widths.label);
    chart += "  " + PadLeft(TwoDigits(entry.value), widths.value);
    const std::string bar = Bar(entry.value, largest, longestBarChars);
    chart += bar.empty() ? "\n" : "  " + bar + "\n";
  }
  return chart;
}

}  // namespace WattleafHost
