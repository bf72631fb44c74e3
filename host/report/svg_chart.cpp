#include "report/svg_chart.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "text/figure_text.h"
#include "text/html_text.h"

namespace WattleafHost {

namespace {

// From top to bottom, in pixels: a row of values, the bars, a row of labels.
constexpr double kValuesHeight = 24.0;
constexpr double kBarsHeight = 160.0;
constexpr double kLabelsHeight = 28.0;
constexpr double kLeastBarHeight = 2.0;
constexpr double kValueGap = 7.0;
constexpr double kLabelGap = 19.0;
// Of the width that each point has.
constexpr double kBarShare = 0.62;
constexpr std::size_t kMostLabelsInNarrowPages = 8;
constexpr std::size_t kLabelChars = 8;
constexpr std::size_t kValueChars = 12;

/// Where energies are in a chart. Heights are worked out in shares of the largest energy, because
/// the difference of two huge ones can be infinite.
class Scale {
 public:
  explicit Scale(const std::vector<EnergyPoint>& points) {
    double low = 0.0;
    double high = 0.0;
    for (const EnergyPoint& point : points) {
      if (!HasValue(point)) continue;
      low = std::min(low, point.energyWh);
      high = std::max(high, point.energyWh);
    }
    largest_ = std::max(high, -low);
    if (largest_ == 0.0) return;
    high_ = high / largest_;
    span_ = high_ - low / largest_;
  }

  [[nodiscard]] double ZeroLine() const { return kValuesHeight + kBarsHeight * high_ / span_; }

  /// Above zero for every energy other than 0.
  [[nodiscard]] double Height(double energyWh) const {
    if (energyWh == 0.0) return 0.0;
    const double height = kBarsHeight * std::fabs(energyWh / largest_) / span_;
    return std::max(height, kLeastBarHeight);
  }

 private:
  double largest_ = 0.0;
  double high_ = 1.0;
  double span_ = 1.0;
};

/// The place of one point, in percent of the chart's width.
struct Slot {
  Slot(std::size_t index, std::size_t count)
      : width(100.0 / static_cast<double>(count)), left(static_cast<double>(index) * width) {}

  [[nodiscard]] std::string Center() const { return LengthText(left + width / 2.0) + "%"; }
  [[nodiscard]] std::string BarLeft() const {
    return LengthText(left + width * (1.0 - kBarShare) / 2.0) + "%";
  }
  [[nodiscard]] std::string BarWidth() const { return LengthText(width * kBarShare) + "%"; }

  double width;
  double left;
};

std::string Text(const std::string& cssClass, const Slot& slot, double y, const std::string& text) {
  return "<text class=\"" + cssClass + "\" x=\"" + slot.Center() + "\" y=\"" + LengthText(y) +
         "\">" + text + "</text>";
}

std::string Rect(const std::string& attributes, const Slot& slot, double y, double height) {
  return "<rect " + attributes + " x=\"" + slot.BarLeft() + "\" y=\"" + LengthText(y) +
         "\" width=\"" + slot.BarWidth() + "\" height=\"" + LengthText(height) + "\"/>";
}

std::string Hatching(const std::string& id) {
  return "<defs><pattern id=\"" + id +
         "-hatch\" width=\"7\" height=\"7\" patternUnits=\"userSpaceOnUse\" "
         "patternTransform=\"rotate(45)\"><line class=\"hatch\" x1=\"0\" y1=\"0\" x2=\"0\" "
         "y2=\"7\"/></pattern></defs>";
}

/// The area and the words of a point without data.
std::string Gap(const std::string& id, const Slot& slot) {
  const std::string fill = "class=\"gap\" fill=\"url(#" + id + "-hatch)\"";
  return Rect(fill, slot, kValuesHeight, kBarsHeight) +
         Text("nodata", slot, kValuesHeight + kBarsHeight / 2.0, "no data");
}

/// The bar and its value. The value of a bar that goes down is above the line of zero.
std::string Bar(const Scale& scale, const Slot& slot, double energyWh) {
  const double height = scale.Height(energyWh);
  const double top = energyWh > 0.0 ? scale.ZeroLine() - height : scale.ZeroLine();
  const std::string bar = height > 0.0 ? Rect("class=\"bar\"", slot, top, height) : "";
  return bar +
         Text("value", slot, top - kValueGap, HtmlText(ShortFigureText(energyWh), kValueChars));
}

std::string PointText(const EnergyPoint& point) {
  return HasValue(point) ? FigureText(point.energyWh) + " Wh" : "no data";
}

std::string Point(const std::string& id, const Scale& scale, const Slot& slot,
                  const EnergyPoint& point, const std::string& labelClass) {
  const std::string label = HtmlText(point.label, kLabelChars);
  const std::string shape = HasValue(point) ? Bar(scale, slot, point.energyWh) : Gap(id, slot);
  return "<g><title>" + label + ": " + PointText(point) + "</title>" + shape +
         Text(labelClass, slot, kValuesHeight + kBarsHeight + kLabelGap, label) + "</g>\n";
}

std::string Extreme(const std::string& name, const EnergyPoint& point) {
  return name + ": " + FigureText(point.energyWh) + " Wh (" + HtmlText(point.label, kLabelChars) +
         "). ";
}

}  // namespace

bool HasValue(const EnergyPoint& point) { return point.hasData && std::isfinite(point.energyWh); }

std::string ChartSummary(const std::vector<EnergyPoint>& points) {
  std::vector<EnergyPoint> known;
  std::copy_if(points.begin(), points.end(), std::back_inserter(known), &HasValue);
  std::string summary;
  if (!known.empty()) {
    const auto [lowest, highest] = std::minmax_element(
        known.begin(), known.end(),
        [](const EnergyPoint& a, const EnergyPoint& b) { return a.energyWh < b.energyWh; });
    summary = Extreme("Highest", *highest) + Extreme("Lowest", *lowest);
  }
  const std::size_t missing = points.size() - known.size();
  if (missing == 0) return summary + "No data: none.";
  return summary + "No data: " + std::to_string(missing) + " of " + std::to_string(points.size()) +
         ".";
}

std::string SvgChart(const std::string& id, const std::string& title,
                     const std::vector<EnergyPoint>& points) {
  const Scale scale(points);
  const std::string zero = LengthText(scale.ZeroLine());
  const double height = kValuesHeight + kBarsHeight + kLabelsHeight;
  std::string svg = "<svg class=\"chart\" role=\"img\" aria-labelledby=\"" + id + "-title " + id +
                    "-desc\" width=\"100%\" height=\"" + LengthText(height) + "\">\n<title id=\"" +
                    id + "-title\">" + title + "</title>\n<desc id=\"" + id + "-desc\">" +
                    ChartSummary(points) + "</desc>\n" + Hatching(id) + "\n";
  const bool isCrowded = points.size() > kMostLabelsInNarrowPages;
  for (std::size_t i = 0; i < points.size(); ++i) {
    // The last label is one of those that stay.
    const bool isSpare = isCrowded && (points.size() - i) % 2 == 0;
    svg += Point(id, scale, Slot(i, points.size()), points[i], isSpare ? "label spare" : "label");
  }
  return svg + "<line class=\"zero\" x1=\"0\" x2=\"100%\" y1=\"" + zero + "\" y2=\"" + zero +
         "\"/>\n</svg>\n";
}

}  // namespace WattleafHost
