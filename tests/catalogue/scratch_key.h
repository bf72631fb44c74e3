#pragma once

#include <windows.h>

#include <string>

namespace TestSupport {

/// A new registry key, volatile below HKEY_CURRENT_USER. The destructor removes it with all
/// subkeys.
class ScratchKey {
 public:
  /// Below HKEY_CURRENT_USER, with a name that no other key has.
  ScratchKey();
  ScratchKey(HKEY hive, std::wstring path);
  ScratchKey(const ScratchKey&) = delete;
  ScratchKey& operator=(const ScratchKey&) = delete;
  ~ScratchKey();

  [[nodiscard]] HKEY Hive() const { return hive_; }
  [[nodiscard]] const wchar_t* Path() const { return path_.c_str(); }

  void AddSubkey(const std::wstring& subkey) const;
  /// Sets a terminated text; creates the subkey if it does not exist.
  void SetText(const std::wstring& subkey, const wchar_t* value, const std::wstring& text) const;
  /// Sets exactly these bytes.
  void SetBytes(const std::wstring& subkey, const wchar_t* value, DWORD type,
                const std::string& bytes) const;

 private:
  HKEY hive_;
  std::wstring path_;
};

}  // namespace TestSupport
