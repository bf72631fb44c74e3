#pragma once

#include <windows.h>

#include <map>
#include <set>
#include <string>

// Part of the stand-in for the package manager.
namespace Standin::Packages {

/// Which calls do not do what they should, and how the addresses of logos look. Comma-separated
/// words:
///   fail:CALL=HEX   the call gives this HRESULT and no result
///   null:CALL       the call succeeds without an object
///   address:uri     a logo's address has the path of a URI: "/C:/Program%20Files/..." (default)
///   address:plain   it has the file's own path: "/C:\Program Files\..."
/// The calls: ActivateInstance, FindPackages, First, HasCurrent, Current, MoveNext, IsFramework,
/// Id, Name, InstalledLocation, IStorageItem, Path, IPackage2, DisplayName, Logo, LogoPath,
/// IPackage4, SignatureKind; those with an "I" of their own are requests for that interface.
class Script {
 public:
  /// Adds these words to the ones that are there; false where one means nothing.
  bool Add(const std::string& words);

  /// What the call gives; S_OK if nothing was said about it.
  HRESULT ResultOf(const std::string& call) const;
  bool GivesNull(const std::string& call) const { return nulls_.count(call) != 0; }
  bool HasPlainAddresses() const { return hasPlainAddresses_; }

 private:
  bool AddWord(const std::string& word);

  std::map<std::string, HRESULT> failures_;
  std::set<std::string> nulls_;
  bool hasPlainAddresses_ = false;
};

}  // namespace Standin::Packages
