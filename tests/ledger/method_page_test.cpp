// docs/method.md explains the figures with an example. The page must show what the code computes.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "ledger/day_energy.h"
#include "ledger/fake_days.h"
#include "ledger/power_ledger.h"
#include "ledger/series.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using TestSupport::Day;
using TestSupport::FakeDays;

namespace {

std::string Page() {
  std::ifstream file(WATTLEAF_METHOD_PAGE);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The words of the page's indented lines that begin with a date and have `count` words.
std::vector<std::vector<std::string>> DatedLines(std::size_t count) {
  std::vector<std::vector<std::string>> found;
  std::istringstream page(Page());
  for (std::string line; std::getline(page, line);) {
    if (!line.starts_with("    2026-")) continue;
    std::istringstream words(line);
    const std::vector<std::string> all{std::istream_iterator<std::string>(words), {}};
    if (all.size() == count) found.push_back(all);
  }
  return found;
}

FakeDays SamplesOfPage() {
  std::map<std::string, std::vector<std::string>> days;
  for (const auto& words : DatedLines(4)) {
    days[words[0]].push_back(TestSupport::Sample(words[0] + "T" + words[1], words[3], words[2]));
  }
  return FakeDays{{"2026-03-09", TestSupport::List(days["2026-03-09"])},
                  {"2026-03-10", TestSupport::List(days["2026-03-10"])},
                  {"2026-03-11", TestSupport::List(days["2026-03-11"])}};
}

PowerLedger LedgerOfPage() {
  PowerLedger ledger;
  for (const auto& words : DatedLines(2)) ledger[Day(words[0])] = std::stof(words[1]);
  return ledger;
}

std::string Decimals(double value) {
  char text[64];
  std::snprintf(text, sizeof(text), "%f", value);
  return text;
}

/// Whether the page has `text`, not as a part of a longer number.
::testing::AssertionResult PageHas(const std::string& text) {
  const std::string page = Page();
  if (page.find(" " + text + " ") != std::string::npos) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << "docs/method.md lacks " << text;
}

}  // namespace

TEST(MethodPage, HasTheEnergyOfItsExample) {
  ASSERT_EQ(DatedLines(4).size(), 10U);
  FakeDays days = SamplesOfPage();
  const float energyWh = DayEnergyWh(Day("2026-03-10"), days.Summaries());
  EXPECT_NEAR(energyWh, 25.9 / 0.88, 1e-5);
  EXPECT_TRUE(PageHas(Decimals(25.9 / 0.88)));
}

TEST(MethodPage, HasTheEnergyOfItsHour) {
  FakeDays days = SamplesOfPage();
  const std::map<int, float> hours = HourlyEnergyWh(Day("2026-03-10"), days.Reader());
  ASSERT_TRUE(hours.contains(0));
  EXPECT_NEAR(hours.at(0), 21.5 / 0.88, 1e-5);
  EXPECT_TRUE(PageHas(Decimals(21.5 / 0.88)));
}

TEST(MethodPage, ItsTableAddsUpToTheSum) {
  double sum = 0.0;
  std::istringstream page(Page());
  for (std::string line; std::getline(page, line);) {
    int seconds = 0;
    double watts = 0.0;
    double energyWh = 0.0;
    if (std::sscanf(line.c_str(), "| %*d:%*d:%*d | %*d:%*d:%*d | %d | %lf | %lf |", &seconds,
                    &watts, &energyWh) != 3) {
      continue;
    }
    EXPECT_NEAR(seconds * watts / 3600.0, energyWh, 1e-9) << line;
    sum += energyWh;
  }
  EXPECT_NEAR(sum, 25.9, 1e-9);
}

TEST(MethodPage, HasTheAverageAndTheMeanOfTheWeek) {
  const PowerLedger ledger = LedgerOfPage();
  ASSERT_EQ(ledger.size(), 7U);
  const DateTime today = Day("2026-03-11");
  const float average = AverageDayEnergyWh(today, ledger);
  EXPECT_TRUE(PageHas(Decimals(average)));
  EXPECT_EQ(Decimals(average), "52.000000");

  double sum = 0.0;
  for (const SeriesEntry& entry : DaySeries(today, ledger)) sum += entry.energyWh;
  EXPECT_TRUE(PageHas(Decimals(sum / 7)));
  EXPECT_EQ(Decimals(sum / 7), "60.000000");
}

TEST(MethodPage, HasTheTreesOfItsAverage) {
  const float trees = TreesSaved(AverageDayEnergyWh(Day("2026-03-11"), LedgerOfPage()));
  EXPECT_NEAR(trees, 52.0 * 365 * 3 / 1000 / 300, 1e-6);
  EXPECT_TRUE(PageHas(Decimals(trees)));
}
