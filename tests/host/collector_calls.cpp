#include "collector_calls.h"

#include <sstream>

namespace TestSupport {

std::vector<std::string> CollectorCalls::Lines() const {
  std::vector<std::string> lines;
  if (!FileExists(path_)) return lines;
  std::istringstream text(ReadWholeFile(path_));
  for (std::string line; std::getline(text, line);) lines.push_back(line);
  return lines;
}

}  // namespace TestSupport
