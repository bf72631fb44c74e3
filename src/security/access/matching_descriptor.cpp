#include "security/access/matching_descriptor.h"

#include <utility>

namespace Zq::Gantry::Security {

MatchingDescriptor::MatchingDescriptor() : Operation(Operation::LessThanOrEqual) {}
MatchingDescriptor::MatchingDescriptor(const MatchingDescriptor& other) = default;
MatchingDescriptor& MatchingDescriptor::operator=(const MatchingDescriptor& other) = default;
MatchingDescriptor::~MatchingDescriptor() = default;

UwpMatchingDescriptor::UwpMatchingDescriptor(Server::Uwp::UwpInformation information,
                                             enum MatchingDescriptor::Operation operation)
    : Information(std::move(information)) {
  Operation = operation;
}
UwpMatchingDescriptor::UwpMatchingDescriptor(const UwpMatchingDescriptor& other) = default;
UwpMatchingDescriptor& UwpMatchingDescriptor::operator=(const UwpMatchingDescriptor& other) =
    default;
UwpMatchingDescriptor::~UwpMatchingDescriptor() = default;

Win32MatchingDescriptor::Win32MatchingDescriptor(Server::Win32::Win32Information information,
                                                 enum MatchingDescriptor::Operation operation)
    : Information(std::move(information)) {
  Operation = operation;
}
Win32MatchingDescriptor::Win32MatchingDescriptor(const Win32MatchingDescriptor& other) = default;
Win32MatchingDescriptor& Win32MatchingDescriptor::operator=(const Win32MatchingDescriptor& other) =
    default;
Win32MatchingDescriptor::~Win32MatchingDescriptor() = default;

}  // namespace Zq::Gantry::Security
