// Any texts as the times of one file, in one of many zones: the reader of times must return what
// std::get_time and the C library's calendar make of each. The first byte chooses the zone, the
// second the format or wide text; each line of the others is a text.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <string>

#include "base/literal_times.h"
#include "base/zones.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

constexpr const char* kFormats[] = {kSampleTimeFormat, kTimeStampFormat, kDateFormat};

template <typename... Arguments>
void Check(const LocalTime& time, Arguments... textAndFormat) {
  if (TestSupport::IsSame(time, TestSupport::LiteralTime(textAndFormat...))) return;
  if (!TestSupport::IsLiteralAfterAnotherCall(time, textAndFormat...)) std::abort();
}

/// Bytes from 0x80 up become characters whose low byte is ASCII.
std::wstring Widened(const std::string& text) {
  std::wstring wide;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    wide += static_cast<wchar_t>(byte < 0x80 ? byte : byte + 0x80);
  }
  return wide;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  TestSupport::UseZone(TestSupport::kZones[data[0] % std::size(TestSupport::kZones)].zone);
  const std::size_t format = data[1] % (std::size(kFormats) + 1);
  const bool isWide = format == std::size(kFormats);
  TimeReader reader(isWide ? kTimeStampFormat : kFormats[format]);

  const std::string text(data + 2, data + size);
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const std::string line = text.substr(begin, end - begin);
    const std::wstring wide = Widened(line);
    if (isWide) {
      Check(reader.Read(wide.c_str()), wide.c_str());
    } else {
      Check(reader.Read(line.c_str()), line.c_str(), kFormats[format]);
    }
    begin = end + 1;
  }
  return 0;
}
