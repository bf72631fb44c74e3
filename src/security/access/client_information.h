#pragma once

#include <cstdint>
#include <string>

#include "wattleaf_export.h"

// A client of the host: a packaged Store application or a classic program. The same types describe
// who is calling and which clients stand on a white list. Plain values; the order of the fields is
// a contract with the host.
namespace Zq::Gantry::Server {

/// Scoped, since the two kinds are also the names of namespaces.
enum class ClientType : std::uint32_t {
  Uwp = 0,    ///< packaged Store application
  Win32 = 1,  ///< classic program
};

/// Only Major and Minor are ever compared.
struct ClientVersion {
  ClientVersion() = default;
  ClientVersion(std::uint16_t major, std::uint16_t minor) : Major(major), Minor(minor) {}

  std::uint16_t Major = 0;
  std::uint16_t Minor = 0;
  std::uint16_t Build = 0;
  std::uint16_t Revision = 0;
};

struct WATTLEAF_API IClientInformation {
  /// Type 0, which reads as Uwp.
  IClientInformation();
  explicit IClientInformation(ClientType type);
  IClientInformation(ClientType type, std::wstring id);
  IClientInformation(const IClientInformation& other);
  IClientInformation& operator=(const IClientInformation& other);
  ~IClientInformation();

  ClientType Type = ClientType::Uwp;
  /// What identifies the client: the family name of a Store application, the name of a classic
  /// program.
  std::wstring Id;
};

namespace Uwp {

struct WATTLEAF_API UwpInformation : IClientInformation {
  UwpInformation();
  /// `familyName` is also the Id.
  UwpInformation(std::wstring name, std::wstring familyName, std::uint16_t major,
                 std::uint16_t minor);
  UwpInformation(const UwpInformation& other);
  UwpInformation& operator=(const UwpInformation& other);
  ~UwpInformation();

  std::wstring Name;        ///< package name without the publisher's part
  std::wstring FamilyName;  ///< package family name; the one that is compared
  ClientVersion Version;
  // For the host's own use; copied, never read here.
  std::wstring ExtraText1;
  std::wstring ExtraText2;
  std::uint32_t ExtraNumber = 0;
  std::wstring ExtraText3;
};

}  // namespace Uwp

namespace Win32 {

struct WATTLEAF_API Win32Information : IClientInformation {
  Win32Information();
  /// `name` is also the Id.
  Win32Information(std::wstring name, std::uint16_t major, std::uint16_t minor);
  Win32Information(std::wstring name, std::wstring detail, std::uint16_t major,
                   std::uint16_t minor);
  Win32Information(const Win32Information& other);
  Win32Information& operator=(const Win32Information& other);
  ~Win32Information();

  std::wstring Name;    ///< name of the program; the one that is compared
  std::wstring Detail;  ///< for the host's own use; copied, never read here
  ClientVersion Version;
};

}  // namespace Win32

}  // namespace Zq::Gantry::Server
