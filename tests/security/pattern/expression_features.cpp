#include "security/pattern/expression_features.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace TestSupport {

namespace {

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
bool IsLetter(wchar_t c) { return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z'); }

class FeatureReader {
 public:
  explicit FeatureReader(std::wstring_view text) : text_(text) {}

  ExpressionFeatures Read() {
    while (at_ < text_.size()) ReadTerm();
    return found_;
  }

 private:
  struct Group {
    std::size_t number = 0;  ///< 0: does not capture
    bool isLookAhead = false;
    bool hasAlternatives = false;
    std::vector<std::size_t> certain;  ///< groups that have certainly matched at this position
  };

  wchar_t At(std::size_t offset = 0) const {
    return at_ + offset < text_.size() ? text_[at_ + offset] : L'\0';
  }

  void ReadTerm();
  void ReadEscape();
  void ReadControl();
  void ReadClass();
  void ReadReference();
  void OpenGroup();
  void CloseGroup();
  bool ReadQuantifiers();  ///< false if the first one allows zero repetitions

  std::wstring_view text_;
  std::size_t at_ = 0;
  ExpressionFeatures found_;
  std::vector<Group> groups_{1};
  std::size_t capturing_ = 0;
  std::size_t lookAheads_ = 0;
};

void FeatureReader::ReadTerm() {
  const wchar_t c = At();
  if (c == L'\\') return ReadEscape();
  if (c == L'[') return ReadClass();
  if (c == L'(') return OpenGroup();
  if (c == L')') return CloseGroup();
  ++at_;
  if (c == L'|') {
    groups_.back().hasAlternatives = true;
    groups_.back().certain.clear();
    return;
  }
  if (c == L'^' && lookAheads_ > 0) found_.hasAssertionInLookAhead = true;
  ReadQuantifiers();
}

void FeatureReader::ReadControl() {
  if (At() != L'c') return;
  (IsLetter(At(1)) ? found_.hasControlLetter : found_.hasControlWithoutLetter) = true;
}

void FeatureReader::ReadEscape() {
  ++at_;
  ReadControl();
  const wchar_t c = At();
  if (c >= L'1' && c <= L'9') return ReadReference();
  if (c == L'0' && IsDigit(At(1))) found_.hasDigitAfterNull = true;
  if ((c == L'b' || c == L'B') && lookAheads_ > 0) found_.hasAssertionInLookAhead = true;
  at_ += c == L'c' ? 2 : c == L'x' ? 3 : c == L'u' ? 5 : 1;
  ReadQuantifiers();
}

void FeatureReader::ReadReference() {
  std::size_t number = 0;
  while (IsDigit(At())) number = number * 10 + static_cast<std::size_t>(text_[at_++] - L'0');
  const bool isCertain = std::ranges::any_of(groups_, [number](const Group& group) {
    return std::ranges::find(group.certain, number) != group.certain.end();
  });
  if (!isCertain) found_.hasUncertainReference = true;
  ReadQuantifiers();
}

void FeatureReader::ReadClass() {
  ++at_;
  bool isAfterDash = false;
  while (at_ < text_.size() && At() != L']') {
    const bool isName = At() == L'[' && (At(1) == L'.' || At(1) == L'=' || At(1) == L':');
    if (isName) {
      if (At(1) != L':' && At(3) == At(1) && !IsLetter(At(2))) found_.hasCollatedCharacter = true;
      if (At(1) == L'.' && isAfterDash) found_.hasCollatedRangeEnd = true;
      const std::size_t end = text_.find(At(1), at_ + 2);
      if (end == text_.npos) break;
      at_ = end + 2;
      isAfterDash = false;
      continue;
    }
    isAfterDash = At() == L'-';
    if (At() == L'\\') {
      ++at_;
      ReadControl();
      if (At() == L'0' && IsDigit(At(1))) found_.hasDigitAfterNull = true;
      if (At() == L'c') ++at_;
    }
    ++at_;
  }
  ++at_;
  ReadQuantifiers();
}

void FeatureReader::OpenGroup() {
  Group group;
  if (At(1) == L'?') {
    group.isLookAhead = At(2) != L':';
    at_ += 3;
  } else {
    group.number = ++capturing_;
    ++at_;
  }
  if (group.isLookAhead) ++lookAheads_;
  groups_.push_back(group);
}

void FeatureReader::CloseGroup() {
  ++at_;
  if (groups_.size() == 1) return;
  Group group = groups_.back();
  groups_.pop_back();
  if (group.isLookAhead) --lookAheads_;
  if (!ReadQuantifiers() || group.isLookAhead) return;
  std::vector<std::size_t>& certain = groups_.back().certain;
  if (group.number > 0) certain.push_back(group.number);
  if (group.hasAlternatives) return;
  certain.insert(certain.end(), group.certain.begin(), group.certain.end());
}

bool FeatureReader::ReadQuantifiers() {
  bool isRequired = true;
  for (int count = 0;; ++count) {
    const wchar_t c = At();
    if (c != L'*' && c != L'+' && c != L'?' && c != L'{') return isRequired;
    if (count > 0) found_.hasTwoQuantifiers = true;
    const bool allowsZero = c == L'*' || c == L'?' || (c == L'{' && At(1) == L'0');
    if (count == 0 && allowsZero) isRequired = false;
    if (c == L'{') {
      const std::size_t end = text_.find(L'}', at_);
      if (end == text_.npos) {
        at_ = text_.size();
        return isRequired;
      }
      at_ = end;
    }
    ++at_;
    if (At() == L'?') ++at_;
  }
}

}  // namespace

ExpressionFeatures FeaturesOf(std::wstring_view expression) {
  return FeatureReader(expression).Read();
}

}  // namespace TestSupport
