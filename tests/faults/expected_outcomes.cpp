#include "expected_outcomes.h"

#include <fstream>
#include <stdexcept>

namespace Faults {

namespace {

constexpr std::string_view kNotReached = "not reached | ";
constexpr std::string_view kBar = " | ";

}  // namespace

ExpectedOutcomes::ExpectedOutcomes(const std::string& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::set<std::string>* outcomes = nullptr;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.front() == '#') continue;
    if (line.starts_with(kNotReached)) {
      const auto bar = line.find(kBar, kNotReached.size());
      if (bar == line.npos) throw std::runtime_error("no reason: " + line);
      notReached_[line.substr(kNotReached.size(), bar - kNotReached.size())] =
          line.substr(bar + kBar.size());
    } else if (line.front() == ' ') {
      if (outcomes == nullptr) throw std::runtime_error("an outcome without a call: " + line);
      outcomes->insert(line.substr(line.find_first_not_of(' ')));
    } else {
      outcomes = &outcomes_[line];
    }
  }
}

bool ExpectedOutcomes::Contains(const std::string& scenario, const CallFailure& failure,
                                const std::string& outcome) const {
  const auto row = outcomes_.find(scenario + " | " + failure.name + " | " + failure.failure);
  return row != outcomes_.end() && row->second.count(outcome) != 0;
}

std::string_view ExpectedOutcomes::WhyNotReached(const std::string& call) const {
  const auto row = notReached_.find(call);
  return row != notReached_.end() ? std::string_view(row->second) : std::string_view();
}

}  // namespace Faults
