#pragma once

#include <cstddef>
#include <utility>

namespace Zq::Gantry::Security {

/// A counted reference to an object of the Windows Runtime, or none. Nothing but one pointer: where
/// the host has a reference of another projection, the two have the same form in memory.
template <typename Interface>
class RuntimeReference {
 public:
  RuntimeReference() = default;
  RuntimeReference(std::nullptr_t) {}
  /// Takes a reference of its own.
  explicit RuntimeReference(Interface* object) : object_(object) {
    if (object_ != nullptr) object_->AddRef();
  }
  RuntimeReference(const RuntimeReference& other) : RuntimeReference(other.object_) {}
  RuntimeReference(RuntimeReference&& other) noexcept
      : object_(std::exchange(other.object_, nullptr)) {}
  RuntimeReference& operator=(RuntimeReference other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~RuntimeReference() {
    if (object_ != nullptr) object_->Release();
  }

  Interface* get() const { return object_; }
  Interface& operator*() const { return *object_; }
  explicit operator bool() const { return object_ != nullptr; }

 private:
  Interface* object_ = nullptr;
};

}  // namespace Zq::Gantry::Security
