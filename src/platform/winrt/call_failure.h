#pragma once

#include <windows.h>

#include <exception>

namespace Zq::Gantry::Platform::WinRt {

/// A call of the Windows Runtime that failed, or that succeeded without handing an object out.
class CallFailure : public std::exception {
 public:
  explicit CallFailure(HRESULT result) : result_(result) {}

  /// What the call gave; E_POINTER for a missing object.
  HRESULT Result() const { return result_; }
  const char* what() const noexcept override { return "a call of the Windows Runtime failed"; }

 private:
  HRESULT result_;
};

inline void RaiseIfFailed(HRESULT result) {
  if (FAILED(result)) throw CallFailure(result);
}

}  // namespace Zq::Gantry::Platform::WinRt
