// The energy that is computed while the text is read, against that of whole documents: same bits,
// and the same days read in the same order.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ledger/day_energy.h"
#include "ledger/fake_days.h"
#include "ledger/literal_energy.h"
#include "ledger/sample_lists.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr std::uint32_t kDays = 1200;

/// Three days in a row. In most zones the clocks change on one of them, somewhere in the list.
constexpr std::array<std::array<const char*, 3>, 6> kDates{{
    {"2025-03-29", "2025-03-30", "2025-03-31"},  // Europe/Berlin
    {"2025-10-25", "2025-10-26", "2025-10-27"},
    {"2025-03-08", "2025-03-09", "2025-03-10"},  // America/New_York
    {"2025-11-01", "2025-11-02", "2025-11-03"},
    {"2025-07-14", "2025-07-15", "2025-07-16"},
    {"2024-12-31", "2025-01-01", "2025-01-02"},
}};

/// The texts of three days by date, and the dates that were read.
struct Texts {
  std::map<std::string, std::string> byDate;
  std::vector<std::string> readDates;

  const std::string& Read(const DateTime& day) {
    static const std::string kNone = "[]";
    readDates.push_back(DateOf(day));
    const auto text = byDate.find(readDates.back());
    return text != byDate.end() ? text->second : kNone;
  }
};

/// All bits of a day's energy, of its hours, and what was read for them.
struct Result {
  std::uint32_t dayWh = 0;
  std::map<int, std::uint32_t> hoursWh;
  std::vector<std::string> readDates;

  friend bool operator==(const Result&, const Result&) = default;
};

std::map<int, std::uint32_t> BitsOf(const std::map<int, float>& hours) {
  std::map<int, std::uint32_t> bits;
  for (const auto& [hour, energyWh] : hours) bits[hour] = std::bit_cast<std::uint32_t>(energyWh);
  return bits;
}

Result Streamed(Texts texts, const DateTime& day) {
  const DayReader read = [&](const DateTime& wanted, JsonRowSink& sink) {
    return PassSamples(texts.Read(wanted), sink);
  };
  const float dayWh = DayEnergyWh(day, read);
  const auto hours = HourlyEnergyWh(day, read);
  return {std::bit_cast<std::uint32_t>(dayWh), BitsOf(hours), texts.readDates};
}

Result Literal(Texts texts, const DateTime& day) {
  const DocumentReader read = [&](const DateTime& wanted) { return Document(texts.Read(wanted)); };
  const float dayWh = LiteralDayEnergyWh(day, read);
  const auto hours = LiteralHourlyEnergyWh(read(day).get());
  return {std::bit_cast<std::uint32_t>(dayWh), BitsOf(hours), texts.readDates};
}

}  // namespace

TEST(StreamedEnergy, HasTheBitsOfTheEnergyOfDocuments) {
  std::uint32_t daysWithEnergy = 0;
  std::uint32_t daysWithHours = 0;
  std::uint32_t daysWithNeighbours = 0;
  for (std::uint32_t seed = 0; seed < kDays; ++seed) {
    SampleListGenerator generator(seed);
    const auto& dates = kDates[seed % kDates.size()];
    Texts texts;
    for (const char* date : dates) texts.byDate[date] = generator.ListOf(date);
    const DateTime day = Day(dates[1]);
    const Result expected = Literal(texts, day);
    ASSERT_TRUE(Streamed(texts, day) == expected) << "seed " << seed << "\n"
                                                  << texts.byDate[dates[0]] << "\n"
                                                  << texts.byDate[dates[1]] << "\n"
                                                  << texts.byDate[dates[2]];
    daysWithEnergy += expected.dayWh != 0 ? 1 : 0;
    daysWithHours += expected.hoursWh.empty() ? 0 : 1;
    daysWithNeighbours += expected.readDates.size() == 4 ? 1 : 0;
  }
  // The generated lists have something to compare.
  EXPECT_GT(daysWithEnergy, kDays / 2);
  EXPECT_GT(daysWithHours, kDays / 2);
  EXPECT_GT(daysWithNeighbours, kDays / 3);
}
