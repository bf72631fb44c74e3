#pragma once

#include <cstddef>
#include <utility>

namespace Zq::Gantry::Security {

/// A counted reference to an object of the Windows Runtime, or null. It holds one pointer and
/// nothing else, so it has the same form in memory as the reference type of any other projection.
/// The object is released with the last reference. Do not change one RuntimeReference on two
/// threads at once; whether the object may be called on several threads depends on the object.
template <typename Interface>
class RuntimeReference {
 public:
  /// Null.
  RuntimeReference() = default;
  /// Null. Implicit, so that nullptr can be passed to a call.
  RuntimeReference(std::nullptr_t) {}
  /// Takes a reference of its own (AddRef); null is allowed.
  explicit RuntimeReference(Interface* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  /// Another reference to the same object (AddRef).
  RuntimeReference(const RuntimeReference& other) : RuntimeReference(other.object_) {}
  /// Leaves `other` null.
  RuntimeReference(RuntimeReference&& other) noexcept
      : object_(std::exchange(other.object_, nullptr)) {}
  /// Gives the old reference up after the new one is taken, so assignment to itself is allowed.
  RuntimeReference& operator=(RuntimeReference other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  /// Gives the reference up (Release).
  ~RuntimeReference() {
    if (object_ != nullptr) object_->Release();
  }

  /// The object, without a reference for the caller; null if there is none.
  [[nodiscard]] Interface* get() const { return object_; }
  /// Only if the reference is not null.
  [[nodiscard]] Interface& operator*() const { return *object_; }
  [[nodiscard]] explicit operator bool() const { return object_ != nullptr; }

 private:
  Interface* object_ = nullptr;
};

}  // namespace Zq::Gantry::Security
