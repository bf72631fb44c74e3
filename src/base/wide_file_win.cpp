#include "base/wide_file.h"

#include <windows.h>

#include "base/plain_file.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

UniqueFile Open(const std::wstring& path, const wchar_t* mode) {
  UniqueFile file;
  if (_wfopen_s(file.out(), path.c_str(), mode) != 0) return UniqueFile();
  return file;
}

bool MayBeWritten(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) return true;
  return (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 && !IsLink(path, attributes);
}

}  // namespace

UniqueFile OpenForReading(const std::wstring& path) { return Open(path, L"rb"); }

UniqueFile OpenSharedForReading(const std::wstring& path) {
  return UniqueFile(_wfopen(path.c_str(), L"rb"));
}

UniqueFile OpenForWriting(const std::wstring& path) {
  return MayBeWritten(path) ? Open(path, L"wb") : UniqueFile();
}

std::int64_t LengthBytes(std::FILE* file) {
  if (_fseeki64(file, 0, SEEK_END) != 0) return -1;
  const std::int64_t length = _ftelli64(file);
  return _fseeki64(file, 0, SEEK_SET) == 0 ? length : -1;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
