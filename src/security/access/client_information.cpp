#include "security/access/client_information.h"

#include <utility>

// Copies and destructors are written out so that the library exports them.
namespace Zq::Gantry::Server {

IClientInformation::IClientInformation() = default;
IClientInformation::IClientInformation(ClientType type) : Type(type) {}
IClientInformation::IClientInformation(ClientType type, std::wstring id)
    : Type(type), Id(std::move(id)) {}
IClientInformation::IClientInformation(const IClientInformation& other) = default;
IClientInformation& IClientInformation::operator=(const IClientInformation& other) = default;
IClientInformation::~IClientInformation() = default;

namespace Uwp {

UwpInformation::UwpInformation() : IClientInformation(ClientType::Uwp) {}
UwpInformation::UwpInformation(std::wstring name, std::wstring familyName, std::uint16_t major,
                               std::uint16_t minor)
    : IClientInformation(ClientType::Uwp, familyName),
      Name(std::move(name)),
      FamilyName(std::move(familyName)),
      Version(major, minor) {}
UwpInformation::UwpInformation(const UwpInformation& other) = default;
UwpInformation& UwpInformation::operator=(const UwpInformation& other) = default;
UwpInformation::~UwpInformation() = default;

}  // namespace Uwp

namespace Win32 {

Win32Information::Win32Information() : IClientInformation(ClientType::Win32) {}
Win32Information::Win32Information(std::wstring name, std::uint16_t major, std::uint16_t minor)
    : Win32Information(std::move(name), std::wstring(), major, minor) {}
Win32Information::Win32Information(std::wstring name, std::wstring detail, std::uint16_t major,
                                   std::uint16_t minor)
    : IClientInformation(ClientType::Win32, name),
      Name(std::move(name)),
      Detail(std::move(detail)),
      Version(major, minor) {}
Win32Information::Win32Information(const Win32Information& other) = default;
Win32Information& Win32Information::operator=(const Win32Information& other) = default;
Win32Information::~Win32Information() = default;

}  // namespace Win32

}  // namespace Zq::Gantry::Server
