#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

#include "host/report/sample_figures.h"
#include "report/svg_chart.h"

using namespace WattleafHost;
using testing::HasSubstr;
using testing::Not;
using TestSupport::Count;
using TestSupport::Known;
using TestSupport::Unknown;

namespace {

std::string Chart(const std::vector<EnergyPoint>& points) {
  return SvgChart("days", "Last days", points);
}

}  // namespace

// The bars are 160 high and begin below 24 for the values, so zero is at 184. Each of four points
// has 25 % of the width; its bar has 62 % of that, 15.5 %, with 4.75 % on either side.
TEST(HostSvgChart, DrawsBarsInProportionToTheLargestValue) {
  const std::string svg = Chart({Known("a", 8.0), Known("b", 2.0), Known("c", 0.0), Unknown("d")});
  EXPECT_THAT(svg,
              HasSubstr("<g><title>a: 8.00 Wh</title>"
                        "<rect class=\"bar\" x=\"4.75%\" y=\"24\" width=\"15.5%\" height=\"160\"/>"
                        "<text class=\"value\" x=\"12.5%\" y=\"17\">8.0</text>"
                        "<text class=\"label\" x=\"12.5%\" y=\"203\">a</text></g>"));
  EXPECT_THAT(svg,
              HasSubstr("<g><title>b: 2.00 Wh</title>"
                        "<rect class=\"bar\" x=\"29.75%\" y=\"144\" width=\"15.5%\" height=\"40\"/>"
                        "<text class=\"value\" x=\"37.5%\" y=\"137\">2.0</text>"));
  EXPECT_THAT(svg, HasSubstr("<line class=\"zero\" x1=\"0\" x2=\"100%\" y1=\"184\" y2=\"184\"/>"));
  EXPECT_THAT(svg, HasSubstr("height=\"212\">"));
}

TEST(HostSvgChart, DrawsNoBarForZeroAndHatchesWhatHasNoData) {
  const std::string svg = Chart({Known("a", 8.0), Known("b", 2.0), Known("c", 0.0), Unknown("d")});
  EXPECT_THAT(svg, HasSubstr("<g><title>c: 0.00 Wh</title>"
                             "<text class=\"value\" x=\"62.5%\" y=\"177\">0</text>"));
  EXPECT_THAT(svg, HasSubstr("<g><title>d: no data</title>"
                             "<rect class=\"gap\" fill=\"url(#days-hatch)\" x=\"79.75%\" y=\"24\" "
                             "width=\"15.5%\" height=\"160\"/>"
                             "<text class=\"nodata\" x=\"87.5%\" y=\"104\">no data</text>"));
  EXPECT_THAT(svg, HasSubstr("<pattern id=\"days-hatch\""));
}

TEST(HostSvgChart, DrawsABarOfTwoPixelsForTheSmallestValues) {
  const std::string svg = Chart({Known("a", 1000.0), Known("b", 0.01)});
  EXPECT_THAT(svg, HasSubstr("y=\"182\" width=\"31%\" height=\"2\"/>"
                             "<text class=\"value\" x=\"75%\" y=\"175\">&lt;0.1</text>"));
}

TEST(HostSvgChart, DrawsNegativeValuesBelowTheLineOfZero) {
  // 4 Wh span the height of 160: 3 above zero have 120, 1 below has 40, and zero is at 24 + 120.
  const std::string svg = Chart({Known("a", 3.0), Known("b", -1.0)});
  EXPECT_THAT(svg, HasSubstr("y=\"24\" width=\"31%\" height=\"120\"/>"));
  EXPECT_THAT(svg, HasSubstr("y=\"144\" width=\"31%\" height=\"40\"/>"
                             "<text class=\"value\" x=\"75%\" y=\"137\">-1.0</text>"));
  EXPECT_THAT(svg, HasSubstr("y1=\"144\" y2=\"144\""));
}

TEST(HostSvgChart, DrawsNegativeValuesAlone) {
  const std::string svg = Chart({Known("a", -4.0), Known("b", -1.0)});
  EXPECT_THAT(svg, HasSubstr("y1=\"24\" y2=\"24\""));
  EXPECT_THAT(svg, HasSubstr("y=\"24\" width=\"31%\" height=\"160\"/>"));
  EXPECT_THAT(svg, HasSubstr("y=\"24\" width=\"31%\" height=\"40\"/>"));
}

TEST(HostSvgChart, DrawsTheLargestDoubles) {
  const double huge = std::numeric_limits<double>::max();
  const std::string svg = Chart({Known("a", huge), Known("b", -huge)});
  EXPECT_THAT(svg, HasSubstr("y=\"24\" width=\"31%\" height=\"80\"/>"));
  EXPECT_THAT(svg, HasSubstr("y=\"104\" width=\"31%\" height=\"80\"/>"));
  EXPECT_THAT(svg, HasSubstr(">1.8e+308</text>"));
  EXPECT_THAT(svg, Not(HasSubstr("inf")));
}

TEST(HostSvgChart, ShowsWhatIsNoNumberAsNoData) {
  const std::string svg = Chart({Known("a", std::numeric_limits<double>::quiet_NaN()),
                                 Known("b", std::numeric_limits<double>::infinity())});
  EXPECT_THAT(svg, HasSubstr("<title>a: no data</title>"));
  EXPECT_THAT(svg, HasSubstr("<title>b: no data</title>"));
  EXPECT_THAT(svg, Not(HasSubstr("nan")));
  EXPECT_THAT(svg, Not(HasSubstr("inf")));
}

TEST(HostSvgChart, HasNoBarsIfAllValuesAreZero) {
  const std::string svg = Chart({Known("a", 0.0), Known("b", 0.0)});
  EXPECT_EQ(Count(svg, "class=\"bar\""), 0);
  EXPECT_EQ(Count(svg, ">0</text>"), 2);
  EXPECT_THAT(svg, HasSubstr("y1=\"184\" y2=\"184\""));
}

TEST(HostSvgChart, GivesASingleValueTheWholeWidth) {
  const std::string svg = Chart({Known("a", 5.0)});
  EXPECT_THAT(svg, HasSubstr("x=\"19%\" y=\"24\" width=\"62%\" height=\"160\"/>"));
}

TEST(HostSvgChart, IsDrawnWithoutPoints) {
  const std::string svg = Chart({});
  EXPECT_THAT(svg, HasSubstr("y1=\"184\" y2=\"184\""));
  EXPECT_EQ(Count(svg, "<g>"), 0);
}

TEST(HostSvgChart, MarksEverySecondOfManyLabelsAsSpareButNotTheLast) {
  EXPECT_EQ(Count(Chart(std::vector<EnergyPoint>(8, Known("x", 1.0))), "spare"), 0);
  std::vector<EnergyPoint> points(8, Known("x", 1.0));
  points.push_back(Known("y", 1.0));
  points.push_back(Known("z", 1.0));
  const std::string svg = Chart(points);
  EXPECT_EQ(Count(svg, "class=\"label spare\""), 5);
  EXPECT_THAT(svg, HasSubstr("<text class=\"label spare\" x=\"85%\" y=\"203\">y</text>"));
  EXPECT_THAT(svg, HasSubstr("<text class=\"label\" x=\"95%\" y=\"203\">z</text>"));
}

TEST(HostSvgChart, ShortensAndEscapesHostileLabels) {
  const std::string svg = Chart({Known("<script>alert(1)", 1.0)});
  EXPECT_THAT(svg, HasSubstr(">&lt;script\xE2\x80\xA6</text>"));
  EXPECT_THAT(svg, Not(HasSubstr("<script")));
}

TEST(HostSvgChart, IsAnImageWithATitleAndADescription) {
  EXPECT_THAT(Chart({Known("a", 5.0)}),
              HasSubstr("role=\"img\" aria-labelledby=\"days-title days-desc\" width=\"100%\" "
                        "height=\"212\">\n<title id=\"days-title\">Last days</title>\n"
                        "<desc id=\"days-desc\">Highest: 5.00 Wh (a). Lowest: 5.00 Wh (a). "
                        "No data: none.</desc>"));
}

TEST(HostChartSummary, HasHighestLowestAndTheNumberWithoutData) {
  EXPECT_EQ(ChartSummary({Known("a", 3.0), Known("<", -1.5), Unknown("c"), Known("d", 15.2)}),
            "Highest: 15.20 Wh (d). Lowest: -1.50 Wh (&lt;). No data: 1 of 4.");
  EXPECT_EQ(ChartSummary({Unknown("a"), Unknown("b")}), "No data: 2 of 2.");
}
