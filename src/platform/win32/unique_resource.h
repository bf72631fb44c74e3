#pragma once

#include <utility>

namespace Zq::Gantry::Platform {

/// Owner of one resource. `Policy` names its type, its empty value and its release call:
///   struct Policy { using Type = ...; static Type Empty(); static void Release(Type); };
/// Owners only move; `reset` and move-assignment release what was held.
template <typename Policy>
class UniqueResource {
 public:
  using Type = typename Policy::Type;

  UniqueResource() = default;
  explicit UniqueResource(Type value) : value_(value) {}
  UniqueResource(UniqueResource&& other) noexcept : value_(other.release()) {}
  UniqueResource& operator=(UniqueResource&& other) noexcept {
    if (this != &other) reset(other.release());
    return *this;
  }
  ~UniqueResource() { reset(); }

  Type get() const { return value_; }
  explicit operator bool() const { return value_ != Policy::Empty(); }

  /// For a call that writes a fresh resource; whatever was held is released first.
  Type* out() {
    reset();
    return &value_;
  }

  /// Gives the resource up without releasing it.
  [[nodiscard]] Type release() { return std::exchange(value_, Policy::Empty()); }

  void reset(Type value = Policy::Empty()) {
    const Type old = std::exchange(value_, value);
    if (old != Policy::Empty()) Policy::Release(old);
  }

 private:
  Type value_ = Policy::Empty();
};

}  // namespace Zq::Gantry::Platform
