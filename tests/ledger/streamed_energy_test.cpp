// The energy that is computed while the text is read, against that of whole documents: same bits,
// and the same days read in the same order.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "ledger/day_energy.h"
#include "ledger/fake_days.h"
#include "ledger/literal_energy.h"
#include "ledger/recent_days.h"
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
  const float dayWh = DayEnergyWh(day, Summarized(read));
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

// As a pass reads its folder, back in time, while other programs may change the files.
TEST(RecentDays, HasTheBitsOfTheEnergyOfDocuments) {
  constexpr std::uint32_t kFolders = 200;
  constexpr int kDaysOfAFolder = 8;
  std::uint32_t daysWithEnergy = 0;
  for (std::uint32_t seed = 0; seed < kFolders; ++seed) {
    const ScratchFolder folder;
    SampleListGenerator generator(seed);
    std::mt19937 random(seed);
    std::map<std::string, std::string> texts;
    const auto rewrite = [&](const std::string& date) {
      texts[date] = random() % 8 == 0 ? "[]" : generator.ListOf(date);
      WriteBytes(folder.File(date + ".json"), texts[date]);
    };
    DateTime day = Day(kDates[seed % kDates.size()][2]);
    DateTime early = day;
    for (int i = 0; i < kDaysOfAFolder; ++i) {
      rewrite(DateOf(early));
      early = ShiftKeepingHour(early, -kSecondsPerDay);
    }

    RecentDays recent;
    // Each reading may find another file, but both ways read the same ones.
    std::vector<std::string> changes;
    const DaySummaryReader read = [&](const DateTime& wanted) {
      const std::string date = DateOf(wanted);
      if (texts.contains(date) && random() % 6 == 0) rewrite(date);
      changes.push_back(texts[date]);
      return recent.Read(folder.File(date + ".json").wstring());
    };
    for (int i = 0; i + 1 < kDaysOfAFolder; ++i) {
      changes.clear();
      const float energyWh = DayEnergyWh(day, read);
      std::size_t next = 0;
      const DocumentReader literal = [&](const DateTime&) { return Document(changes.at(next++)); };
      ASSERT_EQ(std::bit_cast<std::uint32_t>(energyWh),
                std::bit_cast<std::uint32_t>(LiteralDayEnergyWh(day, literal)))
          << "seed " << seed << " " << DateOf(day);
      ASSERT_EQ(next, changes.size());
      daysWithEnergy += energyWh != 0 ? 1 : 0;
      day = ShiftKeepingHour(day, -kSecondsPerDay);
    }
  }
  EXPECT_GT(daysWithEnergy, kFolders * kDaysOfAFolder / 3);
}
