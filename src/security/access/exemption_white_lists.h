#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "security/access/client_information.h"
#include "wattleaf_export.h"

// The clients that need no manifest, up to a version, and the rows of these lists. The lists are
// built while the library loads and never changed; they are not exported themselves. Rows are plain
// values. The order of their fields is a contract with the host, and their copies and destructors
// have bodies in the library, so that it exports them under every toolchain.
//
// A row names a client and the highest version of it that is exempt:
//
//   row                            client            exempt
//   latchwardenuwp, 8.9            the same, 8.9     yes
//   latchwardenuwp, 8.9            the same, 7.12    yes
//   latchwardenuwp, 8.9            the same, 8.10    no
namespace Zq::Gantry::Security {

/// What the rows for both kinds of clients have in common.
struct WATTLEAF_API MatchingDescriptor {
  /// The number is part of the contract with the host.
  enum class Operation : std::uint32_t {
    /// The client's version is at most the row's.
    LessThanOrEqual = 1,
  };

  /// With LessThanOrEqual.
  MatchingDescriptor();
  MatchingDescriptor(const MatchingDescriptor& other);
  MatchingDescriptor& operator=(const MatchingDescriptor& other);
  ~MatchingDescriptor();

  /// How a client's version is to be compared with the row's. Copied with the row but not read: the
  /// comparison is always less-or-equal. Written with `enum`, since field and type share their
  /// name.
  enum Operation Operation;
};

/// A row of the list of Store applications.
struct WATTLEAF_API UwpMatchingDescriptor : MatchingDescriptor {
  /// Takes copies of both.
  UwpMatchingDescriptor(Server::Uwp::UwpInformation information,
                        enum MatchingDescriptor::Operation operation);
  UwpMatchingDescriptor(const UwpMatchingDescriptor& other);
  UwpMatchingDescriptor& operator=(const UwpMatchingDescriptor& other);
  ~UwpMatchingDescriptor();

  /// Family name and highest version; nothing else of it is compared.
  Server::Uwp::UwpInformation Information;
};

/// A row of the list of classic programs.
struct WATTLEAF_API Win32MatchingDescriptor : MatchingDescriptor {
  /// Takes copies of both.
  Win32MatchingDescriptor(Server::Win32::Win32Information information,
                          enum MatchingDescriptor::Operation operation);
  Win32MatchingDescriptor(const Win32MatchingDescriptor& other);
  Win32MatchingDescriptor& operator=(const Win32MatchingDescriptor& other);
  ~Win32MatchingDescriptor();

  /// Name and highest version; nothing else of it is compared.
  Server::Win32::Win32Information Information;
};

/// The list of Store applications, by family name. The class has no data; only its static operation
/// is used.
class UwpWithNoZQManifestExemptionWhiteList {
 public:
  /// A copy of the list. It belongs to the caller: a change affects neither the list nor another
  /// copy. Never null. May be called on any thread.
  [[nodiscard]] WATTLEAF_API static std::shared_ptr<std::vector<UwpMatchingDescriptor>>
  GetExemption();

 private:
  static const std::vector<UwpMatchingDescriptor> _white_list;
};

/// The list of classic programs, by name.
class Win32WithNoZQManifestExemptionWhiteList {
 public:
  /// The same for classic programs. The names are in lower case, as a client's name is when it is
  /// compared.
  [[nodiscard]] WATTLEAF_API static std::shared_ptr<std::vector<Win32MatchingDescriptor>>
  GetExemption();

 private:
  static const std::vector<Win32MatchingDescriptor> _white_list;
};

}  // namespace Zq::Gantry::Security
