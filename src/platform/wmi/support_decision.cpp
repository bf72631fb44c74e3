#include "platform/wmi/support_decision.h"

#include <array>
#include <cstddef>
#include <cwchar>

namespace Zq::Gantry::Server::Shared::WMI {

namespace {

constexpr std::int32_t kRead = 1;
constexpr std::int32_t kWrite = 2;
constexpr std::array<std::uint8_t, 2> kProbeItem{0x0A, 0x01};
constexpr std::array<std::uint8_t, 2> kFlagItem{0x0B, 0x01};
constexpr std::uint8_t kProbeValue = 7;
constexpr std::size_t kWriteBytes = 130;
constexpr std::size_t kAnswerBytes = 128;

bool WriteProbeValue(const BiosCommandRunner& run) {
  std::array<std::uint8_t, kWriteBytes> input{kProbeItem[0], kProbeItem[1], kProbeValue};
  return run({kWrite, input, {}});
}

}  // namespace

int DecidePlatformSupport(const std::function<bool()>& readBiosFlag,
                          const std::function<bool()>& findOemMarker) {
  if (!readBiosFlag()) return kPlatformNotSupported;
  return findOemMarker() ? kPlatformSupported : kPlatformNeedsFirmware;
}

bool ReadPlatformFlag(const BiosCommandRunner& run) {
  if (!WriteProbeValue(run)) return false;

  // Kept on purpose: both reads share the buffer. A second answer that writes nothing leaves the 7
  // of the first, which then counts as a flag that is set.
  std::array<std::uint8_t, kAnswerBytes> answer{};
  if (!run({kRead, kProbeItem, answer}) || answer[0] != kProbeValue) return false;
  return run({kRead, kFlagItem, answer}) && (answer[0] & 1U) != 0;
}

bool HoldsCarbonMarker(const WideDocument& document) {
  const auto result = document.FindMember(L"result");
  if (result == document.MemberEnd() || !result->value.IsArray()) return false;
  for (const WideValue& element : result->value.GetArray()) {
    if (!element.IsString()) return false;
    if (std::wcsstr(element.GetString(), L"CarbonSupport=1") != nullptr) return true;
  }
  return false;
}

}  // namespace Zq::Gantry::Server::Shared::WMI
