#pragma once

#include <string>

namespace TestSupport {

/// A new empty folder, which the destructor removes with its content. Links in it are removed, not
/// followed. A folder that a crashed run left is never reused.
class TempFolder {
 public:
  TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  ~TempFolder();

  /// Absolute, without a trailing separator.
  [[nodiscard]] const std::wstring& Path() const { return path_; }
  /// The path of `name` in the folder.
  [[nodiscard]] std::wstring File(const std::wstring& name) const { return path_ + L"\\" + name; }

 private:
  std::wstring path_;
};

/// The whole content of a file. Fails the test and returns an empty string if it cannot be read.
[[nodiscard]] std::string ReadWholeFile(const std::wstring& path);
/// Creates or overwrites a file. Fails the test if it cannot be written.
void WriteWholeFile(const std::wstring& path, const std::string& bytes);
/// Whether `path` exists, as a file or as a folder.
[[nodiscard]] bool FileExists(const std::wstring& path);

}  // namespace TestSupport
