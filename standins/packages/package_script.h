#pragma once

#include <windows.h>

#include <map>
#include <set>
#include <string>

// Part of the stand-in for the package manager.
namespace Standin::Packages {

/// Which calls fail or return null, and the form of the logos' addresses. Comma-separated words:
///   fail:CALL=HEX   the call returns this HRESULT and no result
///   null:CALL       the call succeeds without an object
///   address:uri     a logo's address has the path of a URI: "/C:/Program%20Files/..." (default)
///   address:plain   it has the file's own path: "/C:\Program Files\..."
/// The calls: ActivateInstance, FindPackages, First, HasCurrent, Current, MoveNext, IsFramework,
/// Id, Name, InstalledLocation, IStorageItem, Path, IPackage2, DisplayName, Logo, LogoPath,
/// IPackage4, SignatureKind. The name of an interface stands for QueryInterface of it.
class Script {
 public:
  /// Adds `words` to those added before. False if one of them is unknown; the others are added.
  [[nodiscard]] bool Add(const std::string& words);

  /// The scripted result of the call; S_OK if there is none.
  [[nodiscard]] HRESULT ResultOf(const std::string& call) const;
  [[nodiscard]] bool ReturnsNull(const std::string& call) const { return nulls_.count(call) != 0; }
  [[nodiscard]] bool HasPlainAddresses() const { return hasPlainAddresses_; }

 private:
  bool AddWord(const std::string& word);

  std::map<std::string, HRESULT> failures_;
  std::set<std::string> nulls_;
  bool hasPlainAddresses_ = false;
};

}  // namespace Standin::Packages
