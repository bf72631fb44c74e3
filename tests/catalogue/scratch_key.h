#pragma once

#include <windows.h>

#include <string>

namespace TestSupport {

/// A new registry key (volatile below HKEY_CURRENT_USER) with what a test puts below it, removed at
/// the end.
class ScratchKey {
 public:
  /// Below HKEY_CURRENT_USER, under a name of its own.
  ScratchKey();
  ScratchKey(HKEY hive, std::wstring path);
  ScratchKey(const ScratchKey&) = delete;
  ScratchKey& operator=(const ScratchKey&) = delete;
  ~ScratchKey();

  HKEY Hive() const { return hive_; }
  const wchar_t* Path() const { return path_.c_str(); }

  void AddSubkey(const std::wstring& subkey) const;
  /// A text with its end; the subkey is made where it is missing.
  void SetText(const std::wstring& subkey, const wchar_t* value, const std::wstring& text) const;
  /// Exactly these bytes.
  void SetBytes(const std::wstring& subkey, const wchar_t* value, DWORD type,
                const std::string& bytes) const;

 private:
  HKEY hive_;
  std::wstring path_;
};

}  // namespace TestSupport
