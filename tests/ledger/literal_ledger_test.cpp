// Generated ledgers, loaded, updated and saved over several passes: the same as by the literal
// algorithm, to the last bit. Each zone runs all of them.
#include "ledger/literal_ledger.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "base/local_calendar.h"
#include "base/scratch_folder.h"
#include "ledger/fake_days.h"
#include "ledger/ledger_cursor.h"
#include "ledger/ledger_file.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;
using namespace TestSupport;

namespace {

constexpr unsigned kCases = 60;
constexpr int kPasses = 4;

class Generator {
 public:
  explicit Generator(unsigned seed) : random_(seed) {}

  std::size_t Below(std::size_t limit) { return random_() % limit; }

  /// A day of the years 2023 to 2026, at midnight with the daylight flag of a random hour. Some are
  /// days of January 2012, when Samoa had left out 2011-12-30.
  DateTime Today() {
    DateTime today =
        LocalTimeOf(Below(6) == 0 ? 1'325'376'000 + static_cast<std::int64_t>(Below(2'000'000))
                                  : 1'672'574'400 + static_cast<std::int64_t>(Below(126'230'400)));
    today.tm_hour = today.tm_min = today.tm_sec = 0;
    return today;
  }

  /// A file: mostly an array of days.
  std::string File(const DateTime& today) {
    std::vector<std::string> elements(Below(6) == 0 ? 300 : Below(25));
    for (std::string& element : elements) element = Element(today);
    std::string text = List(elements);
    if (Below(12) == 0) text.resize(Below(text.size() + 1));
    if (Below(20) == 0) text = R"({"Key":)" + text + "}";
    return text;
  }

 private:
  std::string Date(const DateTime& today) {
    static const std::vector<std::string> kOdd{
        "2024-02-31", "24-1-1",     " 2024-01-01", "",           "today",
        "2024-05",    "2024-13-01", "1969-12-31",  "1970-01-01", "3000-12-31",
        "3001-01-01", "0000-00-00", "99999-1-1",   "2025-06-1x", "2025-6-31",
        "2024-04-26", "2025-04-25", "2026-04-24",  "2011-12-30", "2011-12-31",
        "2025-03-30", "2025-03-09", "2025-10-26",  "2025-11-02", "2018-11-04"};
    if (Below(5) == 0) return kOdd[Below(kOdd.size())];
    if (Below(10) == 0)
      return DateOf(LocalTimeOf(static_cast<std::int64_t>(Below(32'000'000'000))));
    const auto back = static_cast<std::int64_t>(Below(240)) - 15;
    return DateOf(ShiftKeepingHour(today, -back * kSecondsPerDay));
  }

  std::string Number() {
    static const std::vector<std::string> kOdd{
        "0", "-0.0", "1e39", "-1e300", "1e-50", "\"1\"", "null", "18446744073709551615", "[]", "3"};
    if (Below(4) == 0) return kOdd[Below(kOdd.size())];
    return std::to_string(static_cast<double>(random_()) / 1e7);
  }

  std::string Element(const DateTime& today) {
    const std::string key = R"("Key":")" + Date(today) + '"';
    const std::string value = R"("Value":)" + Number();
    switch (Below(30)) {
      case 0:
        return Number();
      case 1:
        return "{" + key + "}";
      case 2:
        return "{" + value + "}";
      case 3:
        return R"({"Key":)" + Number() + "," + value + "}";
      case 4:
        return "{" + key + R"(,"Key":")" + Date(today) + "\"," + value + "}";
      case 5:
        return "{" + value + R"(,"Value":)" + Number() + "," + key + "}";
      default:
        return "{" + key + "," + value + "}";
    }
  }

  std::mt19937 random_;
};

/// Energies that depend on the day alone, some of them 0.0, and a list of all calls.
struct FakeLedgerDays {
  std::vector<std::string> calls{};

  LedgerDays Days() {
    return {[this](const DateTime& day) {
              calls.push_back("energy " + DateOf(day));
              return day.tm_mday % 3 == 0 ? 0.0F : static_cast<float>(day.tm_yday) / 7.0F;
            },
            [this](const DateTime& day) { calls.push_back("discard " + DateOf(day)); }};
  }
};

/// Both ledgers of one case.
struct Ledgers {
  const ScratchFolder folder{};
  const std::filesystem::path file = folder.File("ledger.json");
  PowerLedger ours{};
  PowerLedger literal{};

  void Pass(const DateTime& today) {
    LoadLedger(file.wstring(), OldestDay(today), ours);
    LiteralLoad(file.wstring(), OldestDay(today), literal);
    ASSERT_EQ(BitsOf(ours), BitsOf(literal)) << "after loading";
    EXPECT_EQ(HoldsLedger(file.wstring(), ours), LiteralHolds(file.wstring(), literal));

    FakeLedgerDays ourDays;
    FakeLedgerDays literalDays;
    UpdateLedger(today, ours, ourDays.Days());
    LiteralUpdate(today, literal, literalDays.Days());
    EXPECT_EQ(ourDays.calls, literalDays.calls);
    ASSERT_EQ(BitsOf(ours), BitsOf(literal)) << "after the walk";
    EXPECT_EQ(std::bit_cast<std::uint32_t>(AverageDayEnergyWh(today, ours)),
              std::bit_cast<std::uint32_t>(LiteralAverage(today, literal)));

    const std::filesystem::path other = folder.File("literal.json");
    EXPECT_TRUE(SaveLedger(file.wstring(), ours));
    EXPECT_TRUE(LiteralSave(other.wstring(), literal));
    EXPECT_EQ(ReadBytes(file), ReadBytes(other));
    EXPECT_TRUE(HoldsLedger(file.wstring(), ours));
  }
};

}  // namespace

TEST(LiteralLedger, AgreesWithGeneratedPasses) {
  for (unsigned seed = 0; seed < kCases; ++seed) {
    SCOPED_TRACE(seed);
    Generator generator(seed);
    Ledgers ledgers;
    DateTime today = generator.Today();
    for (int pass = 0; pass < kPasses; ++pass) {
      // The first pass reads a written file, a later one mostly what was saved.
      if (pass == 0 || generator.Below(3) == 0) {
        WriteBytes(ledgers.file, generator.File(today));
      }
      ledgers.Pass(today);
      if (HasFatalFailure()) return;
      const auto days = static_cast<std::int64_t>(generator.Below(4));
      today = ShiftKeepingHour(today, days * kSecondsPerDay);
    }
  }
}

TEST(LedgerCursor, FindsDaysInAnyOrderLikeTheMap) {
  for (unsigned seed = 0; seed < 50; ++seed) {
    SCOPED_TRACE(seed);
    Generator generator(seed);
    PowerLedger ledger;
    PowerLedger literal;
    LedgerCursor cursor(ledger);
    for (int i = 0; i < 400; ++i) {
      DateTime fields = generator.Today();
      if (generator.Below(8) == 0) fields = kNoTime;
      for (std::size_t steps = generator.Below(8); steps > 0; --steps) {
        const LocalTime day{fields, InstantOf(fields)};
        const auto found = literal.find(fields);
        const float* value = cursor.Find(day);
        ASSERT_EQ(value != nullptr, found != literal.end());
        if (value != nullptr) {
          ASSERT_EQ(*value, found->second);
        }
        if (generator.Below(2) == 0) {
          const auto energyWh = static_cast<float>(i);
          cursor.FindOrInsert(day) = energyWh;
          literal[fields] = energyWh;
        }
        fields =
            ShiftKeepingHour(fields, generator.Below(2) == 0 ? -kSecondsPerDay : kSecondsPerDay);
      }
    }
    EXPECT_EQ(BitsOf(ledger), BitsOf(literal));
  }
}

TEST(ShiftKeepingHour, IsTheSameForADayWithItsInstant) {
  Generator generator(1);
  for (int i = 0; i < 2000; ++i) {
    const DateTime day = i % 50 == 0 ? kNoTime : generator.Today();
    for (const std::int64_t seconds : {-kSecondsPerDay, kSecondsPerDay, -kRetentionSeconds}) {
      const LocalTime shifted = ShiftKeepingHour(LocalTime{day, InstantOf(day)}, seconds);
      const DateTime expected = ShiftKeepingHour(day, seconds);
      ASSERT_EQ(std::bit_cast<Fields>(shifted.fields), std::bit_cast<Fields>(expected));
      ASSERT_EQ(shifted.instant, InstantOf(expected));
    }
  }
}
