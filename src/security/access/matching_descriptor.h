#pragma once

#include <cstdint>

#include "security/access/client_information.h"
#include "wattleaf_export.h"

// The rows of the white lists: a client, and how its version is to be compared.
namespace Zq::Gantry::Security {

struct WATTLEAF_API MatchingDescriptor {
  enum class Operation : std::uint32_t {
    LessThanOrEqual = 1,
  };

  MatchingDescriptor();
  MatchingDescriptor(const MatchingDescriptor& other);
  MatchingDescriptor& operator=(const MatchingDescriptor& other);
  ~MatchingDescriptor();

  /// Travels with the row; the comparison is always less-or-equal and does not read it. `enum`
  /// because field and type share their name.
  enum Operation Operation;
};

struct WATTLEAF_API UwpMatchingDescriptor : MatchingDescriptor {
  UwpMatchingDescriptor(Server::Uwp::UwpInformation information,
                        enum MatchingDescriptor::Operation operation);
  UwpMatchingDescriptor(const UwpMatchingDescriptor& other);
  UwpMatchingDescriptor& operator=(const UwpMatchingDescriptor& other);
  ~UwpMatchingDescriptor();

  Server::Uwp::UwpInformation Information;
};

struct WATTLEAF_API Win32MatchingDescriptor : MatchingDescriptor {
  Win32MatchingDescriptor(Server::Win32::Win32Information information,
                          enum MatchingDescriptor::Operation operation);
  Win32MatchingDescriptor(const Win32MatchingDescriptor& other);
  Win32MatchingDescriptor& operator=(const Win32MatchingDescriptor& other);
  ~Win32MatchingDescriptor();

  Server::Win32::Win32Information Information;
};

}  // namespace Zq::Gantry::Security
