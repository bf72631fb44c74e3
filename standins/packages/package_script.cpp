#include "package_script.h"

#include <cstdlib>
#include <sstream>

namespace Standin::Packages {

bool Script::Add(const std::string& words) {
  bool known = true;
  std::istringstream list(words);
  for (std::string word; std::getline(list, word, ',');) known &= AddWord(word);
  return known;
}

bool Script::AddWord(const std::string& word) {
  if (word.starts_with("null:")) {
    nulls_.insert(word.substr(5));
    return true;
  }
  if (word == "address:uri" || word == "address:plain") {
    hasPlainAddresses_ = word == "address:plain";
    return true;
  }
  const auto sign = word.find('=');
  if (!word.starts_with("fail:") || sign == std::string::npos) return false;
  const unsigned long code = std::strtoul(word.c_str() + sign + 1, nullptr, 16);
  failures_[word.substr(5, sign - 5)] = static_cast<HRESULT>(code);
  return true;
}

HRESULT Script::ResultOf(const std::string& call) const {
  const auto found = failures_.find(call);
  return found == failures_.end() ? S_OK : found->second;
}

}  // namespace Standin::Packages
