#pragma once

#include <cstddef>
#include <iterator>

// Stops a matcher of the standard library that takes exponential time.
namespace Fuzz {

struct TookTooLong {};

/// A position in a text. Each comparison of two positions takes one from `left`, which outlives
/// them; at 0 it throws TookTooLong. A matcher compares before each character and in each round of
/// a loop, even an empty one.
class WatchedIterator {
 public:
  using iterator_category = std::bidirectional_iterator_tag;
  using value_type = wchar_t;
  using difference_type = std::ptrdiff_t;
  using pointer = const wchar_t*;
  using reference = const wchar_t&;

  WatchedIterator() = default;
  WatchedIterator(const wchar_t* position, long& left) : position_(position), left_(&left) {}

  reference operator*() const { return *position_; }
  WatchedIterator& operator++() { return ++position_, *this; }
  WatchedIterator& operator--() { return --position_, *this; }
  WatchedIterator operator++(int) { return {position_++, *left_}; }
  WatchedIterator operator--(int) { return {position_--, *left_}; }

  friend bool operator==(const WatchedIterator& one, const WatchedIterator& other) {
    if (one.left_ && (*one.left_)-- == 0) throw TookTooLong();
    return one.position_ == other.position_;
  }

 private:
  const wchar_t* position_ = nullptr;
  long* left_ = nullptr;
};

}  // namespace Fuzz
