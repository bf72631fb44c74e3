#pragma once

#include <atomic>

namespace Zq::Gantry::Platform {

/// A UniqueResource whose value other threads may read at any time: what they read is the empty
/// value or a resource with all that was written to it before. One thread at a time owns it; a
/// reader that uses the resource must know that it is not released meanwhile.
template <typename Policy>
class SharedResource {
 public:
  using Type = typename Policy::Type;

  SharedResource() = default;
  SharedResource(const SharedResource&) = delete;
  SharedResource& operator=(const SharedResource&) = delete;
  ~SharedResource() { reset(); }

  Type get() const { return value_.load(std::memory_order_acquire); }
  explicit operator bool() const { return get() != Policy::Empty(); }

  /// Gives the resource up without releasing it.
  [[nodiscard]] Type release() {
    return value_.exchange(Policy::Empty(), std::memory_order_acq_rel);
  }

  void reset(Type value = Policy::Empty()) {
    const Type old = value_.exchange(value, std::memory_order_acq_rel);
    if (old != Policy::Empty()) Policy::Release(old);
  }

 private:
  std::atomic<Type> value_ = Policy::Empty();
};

}  // namespace Zq::Gantry::Platform
