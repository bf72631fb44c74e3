#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <utility>

namespace TestSupport {

/// Sets a variable of this process's environment while this object exists, or removes it if `value`
/// is null; programs that are started meanwhile inherit it. The destructor restores the old value.
/// An empty old value counts as none.
class ScopedVariable {
 public:
  ScopedVariable(std::wstring name, const wchar_t* value) : name_(std::move(name)) {
    std::wstring old(kMostChars, L'\0');
    const DWORD length = GetEnvironmentVariableW(name_.c_str(), old.data(), kMostChars);
    if (length > 0) before_ = old.substr(0, length);
    SetEnvironmentVariableW(name_.c_str(), value);
  }
  ScopedVariable(std::wstring name, const std::wstring& value)
      : ScopedVariable(std::move(name), value.c_str()) {}
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;
  ~ScopedVariable() {
    SetEnvironmentVariableW(name_.c_str(), before_ ? before_->c_str() : nullptr);
  }

 private:
  /// The longest value that Windows stores, its terminator included.
  static constexpr DWORD kMostChars = 32768;

  const std::wstring name_;
  std::optional<std::wstring> before_;
};

}  // namespace TestSupport
