#include "firmware_script.h"

#include <algorithm>
#include <cwchar>
#include <utility>

#include "words.h"

namespace Standin::Firmware {

namespace {

template <typename Map>
auto FindOccurrence(const Map& map, const std::string& call, int occurrence) {
  const auto [first, last] = map.equal_range(call);
  const auto hit = std::find_if(first, last, [occurrence](const auto& entry) {
    return entry.second.occurrence == kAlways || entry.second.occurrence == occurrence;
  });
  return hit == last ? map.end() : hit;
}

}  // namespace

std::vector<std::string> Script::Reset(const std::string& words) {
  {
    const std::lock_guard guard(lock_);
    words_.clear();
    failures_.clear();
    answers_.clear();
    actions_.clear();
    counts_.clear();
    trace_.clear();
  }
  std::vector<std::string> unknown;
  for (const std::string& word : SplitWords(words)) {
    if (!ApplyWord(word, *this)) unknown.push_back(word);
    const std::lock_guard guard(lock_);
    words_.push_back(word);
  }
  return unknown;
}

void Script::Fail(const std::string& call, HRESULT result, int occurrence) {
  const std::lock_guard guard(lock_);
  failures_.insert({call, {occurrence, result}});
}

void Script::Answer(const std::string& call, VariantMaker make, int occurrence) {
  const std::lock_guard guard(lock_);
  answers_.insert({call, {occurrence, std::move(make)}});
}

void Script::Listen(std::function<void(const std::string&)> listener) {
  const std::lock_guard guard(lock_);
  listener_ = std::move(listener);
}

void Script::During(const std::string& call, std::function<void()> action) {
  const std::lock_guard guard(lock_);
  actions_[call] = std::move(action);
}

bool Script::Has(const std::string& word) const {
  const std::lock_guard guard(lock_);
  return std::find(words_.begin(), words_.end(), word) != words_.end();
}

std::vector<std::string> Script::Trace() const {
  const std::lock_guard guard(lock_);
  return trace_;
}

int Script::Count(const std::string& call) const {
  const std::lock_guard guard(lock_);
  const auto count = counts_.find(call);
  return count == counts_.end() ? 0 : count->second;
}

std::optional<HRESULT> Script::Enter(const std::string& call, const std::string& detail) {
  const std::string line = detail.empty() ? call : call + " " + detail;
  std::function<void(const std::string&)> listener;
  std::function<void()> action;
  std::optional<HRESULT> result;
  {
    const std::lock_guard guard(lock_);
    trace_.push_back(line);
    listener = listener_;
    const auto failure = FindOccurrence(failures_, call, ++counts_[call]);
    if (failure != failures_.end()) result = failure->second.value;
    const auto found = actions_.find(call);
    if (found != actions_.end()) action = found->second;
  }
  if (listener) listener(line);
  if (action) action();
  return result;
}

void Script::End(const std::string& name) {
  std::function<void(const std::string&)> listener;
  {
    const std::lock_guard guard(lock_);
    listener = listener_;
  }
  if (listener) listener("end of " + name);
}

VariantMaker Script::FindAnswer(const std::string& call) const {
  const std::lock_guard guard(lock_);
  const auto count = counts_.find(call);
  const auto answer = FindOccurrence(answers_, call, count == counts_.end() ? 0 : count->second);
  return answer == answers_.end() ? VariantMaker() : answer->second.value;
}

Script& TheScript() {
  static Script script;
  return script;
}

std::string Narrow(const wchar_t* text) {
  std::string result;
  for (; text != nullptr && *text != L'\0'; ++text) {
    result += *text < 0x7F ? static_cast<char>(*text) : '?';
  }
  return result;
}

std::string NarrowBstr(const wchar_t* text) {
  const bool measured =
      text == nullptr || SysStringLen(const_cast<BSTR>(text)) == std::wcslen(text);
  return Narrow(text) + (measured ? "" : " (not a BSTR)");
}

}  // namespace Standin::Firmware
