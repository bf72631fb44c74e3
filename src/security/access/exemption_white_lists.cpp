#include "security/access/exemption_white_lists.h"

#include "security/access/white_list_rows.h"

namespace Zq::Gantry::Security {

using Server::Uwp::UwpInformation;
using Server::Win32::Win32Information;

namespace {

constexpr auto kUpTo = MatchingDescriptor::Operation::LessThanOrEqual;

}  // namespace

MatchingDescriptor::MatchingDescriptor() : Operation(Operation::LessThanOrEqual) {}
MatchingDescriptor::MatchingDescriptor(const MatchingDescriptor& other) = default;
MatchingDescriptor& MatchingDescriptor::operator=(const MatchingDescriptor& other) = default;
MatchingDescriptor::~MatchingDescriptor() = default;

UwpMatchingDescriptor::UwpMatchingDescriptor(Server::Uwp::UwpInformation information,
                                             enum MatchingDescriptor::Operation operation)
    : Information(information) {
  Operation = operation;
}
UwpMatchingDescriptor::UwpMatchingDescriptor(const UwpMatchingDescriptor& other) = default;
UwpMatchingDescriptor& UwpMatchingDescriptor::operator=(const UwpMatchingDescriptor& other) =
    default;
UwpMatchingDescriptor::~UwpMatchingDescriptor() = default;

Win32MatchingDescriptor::Win32MatchingDescriptor(Server::Win32::Win32Information information,
                                                 enum MatchingDescriptor::Operation operation)
    : Information(information) {
  Operation = operation;
}
Win32MatchingDescriptor::Win32MatchingDescriptor(const Win32MatchingDescriptor& other) = default;
Win32MatchingDescriptor& Win32MatchingDescriptor::operator=(const Win32MatchingDescriptor& other) =
    default;
Win32MatchingDescriptor::~Win32MatchingDescriptor() = default;

const std::vector<UwpMatchingDescriptor> UwpWithNoZQManifestExemptionWhiteList::_white_list = {
    {UwpInformation(L"C7E40B19.ZQLumenGuard", L"C7E40B19.ZQLumenGuard_q7m3xk2tdw9pa", 2, 0), kUpTo},
};

const std::vector<Win32MatchingDescriptor> Win32WithNoZQManifestExemptionWhiteList::_white_list = {
    {Win32Information(L"latchwardenuwp", 8, 9), kUpTo},
    {Win32Information(L"zqlatchwardennote", 8, 9), kUpTo},
    {Win32Information(L"latchwardenqfr", 8, 9), kUpTo},
};

std::shared_ptr<std::vector<UwpMatchingDescriptor>>
UwpWithNoZQManifestExemptionWhiteList::GetExemption() {
  return CopyRows(_white_list);
}

std::shared_ptr<std::vector<Win32MatchingDescriptor>>
Win32WithNoZQManifestExemptionWhiteList::GetExemption() {
  return CopyRows(_white_list);
}

}  // namespace Zq::Gantry::Security
