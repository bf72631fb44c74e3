#include "platform/wmi/platform_probes.h"

#include "platform/wmi/public_wmi.h"
#include "platform/wmi/support_decision.h"
#include "platform/wmi/zq_bios_wmi.h"

namespace Zq::Gantry::Server::Shared::WMI {

bool ReadBiosPlatformFlag() {
  ZQBiosWmi bios;
  return ReadPlatformFlag([&bios](const BiosCommand& command) {
    std::uint32_t returnCode = 0;
    const HRESULT result = bios.ExecuteCommand(
        command.command, static_cast<std::uint32_t>(command.input.size()), command.input.data(),
        static_cast<std::uint32_t>(command.output.size()), command.output.data(), &returnCode);
    return SUCCEEDED(result);
  });
}

bool FindCarbonSupportOemString() {
  PublicWmi wmi;
  WideDocument document;
  document.SetObject();
  return wmi.GetPropertyValue(document) == kPropertyRead && HoldsCarbonMarker(document);
}

}  // namespace Zq::Gantry::Server::Shared::WMI
