#pragma once

#include <cstddef>
#include <iterator>
#include <regex>

// How long a match may take, counted in what the matcher does to the text and not in seconds: the
// same answer on every machine.
namespace Zq::Gantry::Security {

/// What is left for one match. Raises regex_error (error_complexity) once nothing is.
class MatchPatience {
 public:
  /// `lookPrice` is paid for each character looked at, `movePrice` for each step in the text.
  MatchPatience(std::size_t total, std::size_t lookPrice, std::size_t movePrice)
      : left_(total), lookPrice_(lookPrice), movePrice_(movePrice) {}

  void PayForComparison() { Pay(1); }
  void PayForLook() { Pay(lookPrice_); }
  void PayForMove() { Pay(movePrice_); }

 private:
  void Pay(std::size_t price) {
    if (left_ < price) throw std::regex_error(std::regex_constants::error_complexity);
    left_ -= price;
  }

  std::size_t left_;
  std::size_t lookPrice_;
  std::size_t movePrice_;
};

/// A place in a text whose reader pays.
class PatientPosition {
 public:
  using iterator_category = std::bidirectional_iterator_tag;
  using value_type = wchar_t;
  using difference_type = std::ptrdiff_t;
  using pointer = const wchar_t*;
  using reference = const wchar_t&;

  PatientPosition() = default;
  PatientPosition(const wchar_t* place, MatchPatience& patience)
      : place_(place), patience_(&patience) {}

  reference operator*() const {
    patience_->PayForLook();
    return *place_;
  }
  PatientPosition& operator++() {
    patience_->PayForMove();
    ++place_;
    return *this;
  }
  PatientPosition operator++(int) {
    const PatientPosition before = *this;
    ++*this;
    return before;
  }
  PatientPosition& operator--() {
    patience_->PayForMove();
    --place_;
    return *this;
  }
  PatientPosition operator--(int) {
    const PatientPosition before = *this;
    --*this;
    return before;
  }
  /// Paid for as well: a matcher may go round for long without a look at the text, but it compares
  /// where it stands.
  bool operator==(const PatientPosition& other) const {
    if (patience_ != nullptr) patience_->PayForComparison();
    return place_ == other.place_;
  }

 private:
  const wchar_t* place_ = nullptr;
  MatchPatience* patience_ = nullptr;
};

}  // namespace Zq::Gantry::Security
