#pragma once

#include <cstdint>
#include <string>

#include "wattleaf_export.h"

// A client of the host: a packaged Store application or a classic program. The same types describe
// the caller and the clients on a white list (exemption_white_lists.h). Plain values without checks
// of their own: an empty name is a value like any other. The order of the fields is a contract with
// the host, and so are the exported copies and destructors.
namespace Zq::Gantry::Server {

/// The kind of a client. A scoped enumeration, since namespaces have the same two names.
enum class ClientType : std::uint32_t {
  /// Packaged Store application.
  Uwp = 0,
  /// Classic program.
  Win32 = 1,
};

/// The four parts of a version. Only Major and Minor are compared: 8.10 is above 8.9, and 8.9.1 is
/// the same as 8.9.
struct ClientVersion {
  ClientVersion() = default;
  /// Build and Revision stay 0.
  ClientVersion(std::uint16_t major, std::uint16_t minor) : Major(major), Minor(minor) {}

  std::uint16_t Major = 0;
  std::uint16_t Minor = 0;
  std::uint16_t Build = 0;
  std::uint16_t Revision = 0;
};

/// What both kinds of clients have in common. Without virtual functions: not to be deleted through
/// a pointer to it.
struct WATTLEAF_API IClientInformation {
  /// Type 0, which is Uwp.
  IClientInformation();
  explicit IClientInformation(ClientType type);
  /// For the two kinds below, which set both.
  IClientInformation(ClientType type, std::wstring id);
  IClientInformation(const IClientInformation& other);
  IClientInformation& operator=(const IClientInformation& other);
  ~IClientInformation();

  /// Which of the two structures below this is part of.
  ClientType Type = ClientType::Uwp;
  /// Identifies the client: the family name of a Store application, the name of a classic program.
  /// Copied, not compared.
  std::wstring Id;
};

namespace Uwp {

/// A packaged Store application.
struct WATTLEAF_API UwpInformation : IClientInformation {
  /// Of type Uwp, with empty names and version 0.0.
  UwpInformation();
  /// `familyName` is also the Id.
  UwpInformation(std::wstring name, std::wstring familyName, std::uint16_t major,
                 std::uint16_t minor);
  UwpInformation(const UwpInformation& other);
  UwpInformation& operator=(const UwpInformation& other);
  ~UwpInformation();

  /// Package name without the publisher's part. Not compared.
  std::wstring Name;
  /// Package family name; this is the name that is compared, exactly.
  std::wstring FamilyName;
  /// In a list the highest version that is exempt, in a client its own version.
  ClientVersion Version;
  // For the host's own use: copied, not read here.
  std::wstring ExtraText1;
  std::wstring ExtraText2;
  std::uint32_t ExtraNumber = 0;
  std::wstring ExtraText3;
};

}  // namespace Uwp

namespace Win32 {

/// A classic program.
struct WATTLEAF_API Win32Information : IClientInformation {
  /// Of type Win32, with empty names and version 0.0.
  Win32Information();
  /// `name` is also the Id.
  Win32Information(std::wstring name, std::uint16_t major, std::uint16_t minor);
  /// The same with a detail.
  Win32Information(std::wstring name, std::wstring detail, std::uint16_t major,
                   std::uint16_t minor);
  Win32Information(const Win32Information& other);
  Win32Information& operator=(const Win32Information& other);
  ~Win32Information();

  /// Name of the program; this is the name that is compared. A checker changes it to lower case.
  std::wstring Name;
  /// For the host's own use: copied, not read here.
  std::wstring Detail;
  /// In a list the highest version that is exempt, in a client its own version.
  ClientVersion Version;
};

}  // namespace Win32

}  // namespace Zq::Gantry::Server
