#pragma once

#include <string>
#include <vector>

#include "snapshot/snapshot.h"

namespace WattleafHost {

/// Whether the point has a value that can be shown.
[[nodiscard]] bool HasValue(const EnergyPoint& point);

/// What a chart shows, in one or two sentences: "Highest: 15.20 Wh (14:00). Lowest: 0.00 Wh (2:00).
/// No data: 3 of 12." As text of HTML.
[[nodiscard]] std::string ChartSummary(const std::vector<EnergyPoint>& points);

/// Bars as an SVG element: widths are shares of the element's width, so that only the bars grow
/// with the page, and not their texts. Each bar has its value above it and its label below. A point
/// without data is a hatched area of the whole height with the words "no data". Of more than eight
/// labels, every second one has the class "spare", for a page that has no room for all.
/// `id` is unique in the page; `title` is text of HTML.
[[nodiscard]] std::string SvgChart(const std::string& id, const std::string& title,
                                   const std::vector<EnergyPoint>& points);

}  // namespace WattleafHost
