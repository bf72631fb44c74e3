#pragma once

#include <string>

namespace TestSupport {

/// A new empty folder, removed with its content at the end. Links in it are unlinked, not followed.
/// What a run that crashed left behind is never taken for it.
class TempFolder {
 public:
  TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder();

  /// Absolute, without trailing separator.
  const std::wstring& Path() const { return path_; }
  /// The path of `name` in the folder.
  std::wstring File(const std::wstring& name) const { return path_ + L"\\" + name; }

 private:
  std::wstring path_;
};

/// The whole content of a file; fails the test and gives an empty text where it cannot be read.
std::string ReadWholeFile(const std::wstring& path);
/// Writes `bytes`; fails the test where it cannot.
void WriteWholeFile(const std::wstring& path, const std::string& bytes);
bool FileExists(const std::wstring& path);

}  // namespace TestSupport
