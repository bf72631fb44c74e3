#pragma once

#include <string>
#include <vector>

#include "ledger/series.h"

// A series apart, to be compared whole: its labels, and its values in watt-hours.
namespace TestSupport {

using Labels = std::vector<std::string>;
using Values = std::vector<float>;

inline Labels LabelsOf(const Zq::Gantry::Server::Services::Wattleaf::Series& series) {
  Labels labels;
  for (const auto& entry : series) labels.push_back(entry.label);
  return labels;
}

inline Values ValuesOf(const Zq::Gantry::Server::Services::Wattleaf::Series& series) {
  Values values;
  for (const auto& entry : series) values.push_back(entry.energyWh);
  return values;
}

}  // namespace TestSupport
