#include "base/fake_attributes.h"

namespace TestSupport {

FakeReparsePoint* FakeReparsePoint::current_ = nullptr;

FakeReparsePoint::FakeReparsePoint(const std::wstring& path, DWORD tag)
    : path_(path),
      tag_(tag),
      attributes_("GetFileAttributesW", &FakeReparsePoint::Attributes),
      find_("FindFirstFileW", &FakeReparsePoint::Find) {
  current_ = this;
}

FakeReparsePoint::~FakeReparsePoint() { current_ = nullptr; }

DWORD WINAPI FakeReparsePoint::Attributes(const wchar_t* path) {
  if (current_ != nullptr && current_->path_ == path) {
    return FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_REPARSE_POINT;
  }
  return current_->attributes_.Original<decltype(Attributes)>()(path);
}

HANDLE WINAPI FakeReparsePoint::Find(const wchar_t* path, WIN32_FIND_DATAW* entry) {
  const HANDLE search = current_->find_.Original<decltype(Find)>()(path, entry);
  if (current_->path_ != path || search == INVALID_HANDLE_VALUE) return search;
  if (current_->searchFails_) {
    FindClose(search);
    return INVALID_HANDLE_VALUE;
  }
  entry->dwFileAttributes |= current_->searchBit_;
  entry->dwReserved0 = current_->tag_;
  return search;
}

}  // namespace TestSupport
