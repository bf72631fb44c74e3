#include "command_titles.h"

#include <algorithm>
#include <array>

namespace WattleafHost {

namespace {

struct Row {
  unsigned int number;
  std::string_view title;
  std::string_view chartTitle;
  bool readsLedger;
};

constexpr std::array kRows = {
    Row{1, "Energy of an average day, Wh", "", true},
    Row{2, "Top 20 applications", "", false},
    Row{3, "Trees for three years of use", "", true},
    Row{4, "Energy by hour", "Last 12 hours, Wh", false},
    Row{5, "Energy by day", "Last 7 days, Wh", true},
    Row{6, "Energy by month", "Last 6 months, Wh", true},
    Row{7, "Is the platform supported?", "", false},
    Row{8, "Has the data changed?", "", false},
    Row{9, "Errors and warnings", "", false},
    Row{10, "Is data available?", "", false},
};

const Row* Find(unsigned int number) {
  const auto found = std::find_if(kRows.begin(), kRows.end(),
                                  [number](const Row& row) { return row.number == number; });
  return found == kRows.end() ? nullptr : &*found;
}

}  // namespace

std::string_view TitleOf(unsigned int number) {
  const Row* row = Find(number);
  return row == nullptr ? "unknown command" : row->title;
}

std::string_view ChartTitleOf(unsigned int number) {
  const Row* row = Find(number);
  return row == nullptr ? "" : row->chartTitle;
}

bool ReadsLedger(unsigned int number) {
  const Row* row = Find(number);
  return row != nullptr && row->readsLedger;
}

}  // namespace WattleafHost
