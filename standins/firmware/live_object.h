#pragma once

#include <windows.h>

#include <unknwn.h>

#include <atomic>

// Part of the stand-in for the firmware's WMI objects.
namespace Standin::Firmware {

/// How many objects of the stand-in are alive; the class factory is not counted.
inline std::atomic<int>& LiveObjects() {
  static std::atomic<int> count{0};
  return count;
}

/// The reference count of a COM object, which begins at the 1 of its creator.
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
