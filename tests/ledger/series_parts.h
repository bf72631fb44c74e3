#pragma once

#include <string>
#include <vector>

#include "ledger/series.h"

// The labels and the values (in watt-hours) of a series, to be compared as a whole.
namespace TestSupport {

using Labels = std::vector<std::string>;
using Values = std::vector<float>;

[[nodiscard]] inline Labels LabelsOf(const Zq::Gantry::Server::Services::Wattleaf::Series& series) {
  Labels labels;
  for (const auto& entry : series) labels.push_back(entry.label);
  return labels;
}

[[nodiscard]] inline Values ValuesOf(const Zq::Gantry::Server::Services::Wattleaf::Series& series) {
  Values values;
  for (const auto& entry : series) values.push_back(entry.energyWh);
  return values;
}

}  // namespace TestSupport
