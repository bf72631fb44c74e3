#pragma once

#include <windows.h>

#include <string>

// Links that the system itself makes. TempFolder removes them without following them.
namespace TestSupport {

/// Bit 29 of a tag: the reparse point stands for another file.
inline constexpr DWORD kVendorLinkTag = 0x20001234;
inline constexpr DWORD kVendorContentTag = 0x00001234;

/// Whether this user may make symbolic links: in Developer Mode, or as an administrator.
[[nodiscard]] bool MayMakeSymbolicLinks();

/// A symbolic link; the target need not exist. Fails the test if the link cannot be made.
void MakeFileLink(const std::wstring& path, const std::wstring& target);
void MakeFolderLink(const std::wstring& path, const std::wstring& target);

/// A junction, which has the tag of a mount point. `target` is an absolute path.
void MakeJunction(const std::wstring& path, const std::wstring& target);

/// Makes a reparse point of an existing file, with the tag of a vendor whose driver is not there.
void MakeVendorPoint(const std::wstring& path, DWORD tag);

}  // namespace TestSupport
