// Any bytes as the sample files of three days: the energy that is computed while they are read has
// the bits of the energy of whole documents, and so have the hours.
#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <string>

#include "base/date_text.h"
#include "base/json_oracle.h"
#include "base/json_rows.h"
#include "ledger/day_energy.h"
#include "ledger/literal_energy.h"
#include "ledger/recent_days.h"
#include "ledger/sample_energy.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

/// The clocks change on the second one.
constexpr std::array<const char*, 3> kDates{"2025-03-29", "2025-03-30", "2025-03-31"};

std::filesystem::path ScratchFolder() {
  setenv("TZ", "Europe/Berlin", /*overwrite=*/1);
  std::string path = (std::filesystem::temp_directory_path() / "wattleaf-fuzz-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  return path;
}

std::filesystem::path FileOf(const DateTime& day) {
  static const std::filesystem::path folder = ScratchFolder();
  return folder / (FormatDateTime(day, kDateFormat) + ".json");
}

DateTime Day(const char* date) {
  DateTime day;
  return ParseDateTime(day, date, kDateFormat);
}

/// The three texts are the parts between two bytes that no JSON text contains.
void WriteDays(std::string bytes) {
  for (const char* date : kDates) {
    const std::size_t end = std::min(bytes.find('\xFF'), bytes.size());
    std::ofstream(FileOf(Day(date)), std::ios::binary) << bytes.substr(0, end);
    bytes.erase(0, end + 1);
  }
}

bool Read(const DateTime& day, JsonRowSink& sink) {
  return ReadJsonRows(FileOf(day).wstring(), kSampleMembers, sink) == JsonRowsOutcome::kRows;
}

std::unique_ptr<GenericDocument> ReadDocument(const DateTime& day) {
  return TestSupport::DocumentByCharacters(FileOf(day).wstring());
}

bool AreSame(float left, float right) {
  return std::bit_cast<std::uint32_t>(left) == std::bit_cast<std::uint32_t>(right);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static_cast<void>(FileOf(Day(kDates[0])));  // sets the zone
  WriteDays({reinterpret_cast<const char*>(data), size});
  const DateTime day = Day(kDates[1]);
  const float energyWh = TestSupport::LiteralDayEnergyWh(day, ReadDocument);
  RecentDays recent;
  const auto readDay = [&](const DateTime& wanted) {
    return recent.Read(FileOf(wanted).wstring());
  };
  // The second time from what is kept.
  for (int i = 0; i < 2; ++i) {
    if (!AreSame(DayEnergyWh(day, readDay), energyWh)) std::abort();
  }
  const std::map<int, float> hours = HourlyEnergyWh(day, Read);
  const std::map<int, float> expected = TestSupport::LiteralHourlyEnergyWh(ReadDocument(day).get());
  if (!std::ranges::equal(hours, expected, [](const auto& left, const auto& right) {
        return left.first == right.first && AreSame(left.second, right.second);
      })) {
    std::abort();
  }
  return 0;
}
