#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// The number of live objects of the stand-in, without the class factory.
[[nodiscard]] inline std::atomic<int>& LiveObjects() {
  static std::atomic<int> count{0};
  return count;
}

/// A COM object with a reference count. The creator owns the first reference.
template <typename Base>
class LiveObject : public Base {
 public:
  LiveObject() { ++LiveObjects(); }
  LiveObject(const LiveObject&) = delete;
  LiveObject& operator=(const LiveObject&) = delete;

  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

 protected:
  virtual ~LiveObject() { --LiveObjects(); }

 private:
  std::atomic<ULONG> references_{1};
};

}  // namespace Standin::Firmware
