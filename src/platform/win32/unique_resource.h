#pragma once

#include <atomic>
#include <utility>

#if defined(_WIN32)
// As <windows.h> declares them. This header does not include it, since programs that use the
// library include this header.
// NOLINTBEGIN(readability-redundant-declaration)
extern "C" __declspec(dllimport) unsigned long __stdcall GetLastError();
extern "C" __declspec(dllimport) void __stdcall SetLastError(unsigned long error);
// NOLINTEND(readability-redundant-declaration)
#endif

// The generic owner of a resource. Each kind of resource is one policy (owners.h, com_owners.h,
// catalog_owners.h, gdiplus_owners.h; for texts of the Windows Runtime runtime_text.h):
//
//   struct Policy {
//     using Type = ...;                // what the calls take and return; cheap to copy
//     static Type Empty();             // the value that means "no resource"
//     static void Release(Type value); // never called with the empty value
//   };
//
//   owner              may be moved   may be read meanwhile by other threads
//   UniqueResource     yes            no
//   SharedResource     no             yes
namespace Zq::Gantry::Platform {

/// Puts the calling thread's last error (GetLastError) back at the end of the scope, so that a
/// failure can still be reported after its resources are released. Does nothing on other systems.
class LastErrorKeeper {
 public:
#if defined(_WIN32)
  LastErrorKeeper() : error_(GetLastError()) {}
  ~LastErrorKeeper() { SetLastError(error_); }
#else
  LastErrorKeeper() = default;
  ~LastErrorKeeper() {}
#endif
  LastErrorKeeper(const LastErrorKeeper&) = delete;
  LastErrorKeeper& operator=(const LastErrorKeeper&) = delete;

 private:
  /// 0 on other systems, where it is not read.
  [[maybe_unused]] const unsigned long error_ = 0;
};

/// The place of a resource that only its owner's thread uses.
template <typename Type>
class PrivateSlot {
 public:
  explicit PrivateSlot(Type value) : value_(value) {}

  [[nodiscard]] Type Load() const { return value_; }
  /// Puts `value` here and returns what was here before.
  [[nodiscard]] Type Exchange(Type value) { return std::exchange(value_, value); }
  /// For a call that writes the resource.
  [[nodiscard]] Type* Address() { return &value_; }

 private:
  Type value_;
};

/// The place of a resource that other threads may read at any time. They see the empty value, or a
/// resource together with everything that was written to it before it was put here.
template <typename Type>
class AtomicSlot {
 public:
  explicit AtomicSlot(Type value) : value_(value) {}

  [[nodiscard]] Type Load() const { return value_.load(std::memory_order_acquire); }
  [[nodiscard]] Type Exchange(Type value) {
    return value_.exchange(value, std::memory_order_acq_rel);
  }

 private:
  std::atomic<Type> value_;
};

/// The common part of both owners: the resource is released once, when it is replaced or when the
/// owner is destroyed, and the thread's last error is kept meanwhile. A release must not throw.
template <typename Policy, template <typename> class Slot>
class ResourceOwner {
 public:
  using Type = typename Policy::Type;

  /// Empty.
  ResourceOwner() = default;
  /// Takes `value` over; it may be the empty value.
  explicit ResourceOwner(Type value) : slot_(value) {}
  ResourceOwner(const ResourceOwner&) = delete;
  ResourceOwner& operator=(const ResourceOwner&) = delete;
  ~ResourceOwner() { reset(); }

  /// The resource, which stays the owner's; the policy's empty value if it has none.
  [[nodiscard]] Type get() const { return slot_.Load(); }
  /// Whether there is a resource.
  [[nodiscard]] explicit operator bool() const { return get() != Policy::Empty(); }

  /// Gives the resource up without releasing it; the owner is empty afterwards.
  [[nodiscard]] Type release() { return slot_.Exchange(Policy::Empty()); }

  /// Takes `value` over, and then releases the resource that was held.
  void reset(Type value = Policy::Empty()) {
    const Type old = slot_.Exchange(value);
    if (old == Policy::Empty()) return;
    const LastErrorKeeper keeper;
    Policy::Release(old);
  }

 protected:
  Slot<Type> slot_{Policy::Empty()};
};

/// The owner for one thread at a time. It is as large as the resource. It can be moved;
/// move-assignment releases what was held.
template <typename Policy>
class UniqueResource : public ResourceOwner<Policy, PrivateSlot> {
  using Base = ResourceOwner<Policy, PrivateSlot>;

 public:
  using typename Base::Type;

  UniqueResource() = default;
  explicit UniqueResource(Type value) : Base(value) {}
  /// Leaves `other` empty.
  UniqueResource(UniqueResource&& other) noexcept : Base(other.release()) {}
  /// Releases what was held and leaves `other` empty. Assignment to itself changes nothing.
  UniqueResource& operator=(UniqueResource&& other) noexcept {
    if (this != &other) this->reset(other.release());
    return *this;
  }

  /// The place for a call that writes a new resource. Releases what was held first, so it is empty.
  [[nodiscard]] Type* out() {
    this->reset();
    return this->slot_.Address();
  }
};

/// The owner whose `get` any thread may call at any time, while one thread at a time replaces the
/// resource. A reader that uses the resource must make sure that it is not released meanwhile.
template <typename Policy>
using SharedResource = ResourceOwner<Policy, AtomicSlot>;

}  // namespace Zq::Gantry::Platform
