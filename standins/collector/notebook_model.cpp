// Stand-in: a seeded model of the use of a notebook.

#include "notebook_model.h"

#include <algorithm>
#include <array>

#include "seeded_random.h"

namespace Standin {

namespace {

constexpr std::int64_t kMinute = 60;
constexpr std::int64_t kHour = 3600;
constexpr std::int64_t kNormalDaySeconds = 86400;
constexpr std::int64_t kDaysOfSleep = 7;
constexpr std::int64_t kSmallestSetBackSeconds = 10 * kMinute;

enum Purpose : std::uint64_t {
  kNightPurpose = 1,
  kPlanPurpose = 2,
  kSamplePurpose = 3,
  kSleepPurpose = 4,
  kClockPurpose = 5
};
enum class DayKind { kOff, kNothingMeasured, kSingleSample, kOffice, kLeisure };

/// A period in which the notebook is awake.
struct Session {
  std::int64_t begin;
  std::int64_t end;
};

/// The first day of the week of sleep that begins in a period of kHabitDays.
std::int64_t FirstDayOfSleep(std::uint64_t seed, std::int64_t period) {
  return period * kHabitDays + Random(seed, period, kSleepPurpose).Between(0, kHabitDays - 1);
}

/// The week may end in the period after its own.
bool IsWeekOfSleep(std::uint64_t seed, std::int64_t dayNumber) {
  const std::int64_t period = dayNumber / kHabitDays;
  for (const std::int64_t first :
       {FirstDayOfSleep(seed, period - 1), FirstDayOfSleep(seed, period)}) {
    if (dayNumber >= first && dayNumber < first + kDaysOfSleep) return true;
  }
  return false;
}

/// The day of a period on which the clock is set back, from which second of the day and by how
/// much.
struct WrongClock {
  std::int64_t dayNumber;
  std::int64_t fromSecond;
  std::int64_t behindSeconds;
};

WrongClock WrongClockOf(std::uint64_t seed, std::int64_t period) {
  static constexpr std::array<std::int64_t, 4> kSteps = {kSmallestSetBackSeconds, 45 * kMinute,
                                                         kHour, 3 * kHour};
  Random random(seed, period, kClockPurpose);
  WrongClock clock{};
  do {
    clock.dayNumber = period * kHabitDays + random.Between(0, kHabitDays - 1);
  } while (IsWeekOfSleep(seed, clock.dayNumber));
  clock.fromSecond = random.Between(10 * kHour, 16 * kHour);
  clock.behindSeconds = kSteps[static_cast<std::size_t>(random.Between(0, 3))];
  return clock;
}

bool HasWrongClock(std::uint64_t seed, std::int64_t dayNumber) {
  return WrongClockOf(seed, dayNumber / kHabitDays).dayNumber == dayNumber;
}

bool ClocksChange(const ModelDay& day) { return day.lengthSeconds != kNormalDaySeconds; }

bool IsWeekend(std::int64_t dayNumber) {
  const std::int64_t weekday = (dayNumber + 3) % 7;  // 1970-01-01 was a Thursday; 0 is Monday
  return weekday >= 5;
}

DayKind ChooseKind(const ModelSettings& settings, const ModelDay& day, Random& random) {
  const bool weekend = IsWeekend(day.number);
  const DayKind normal = weekend ? DayKind::kLeisure : DayKind::kOffice;
  const std::int64_t draw = random.Between(1, 100);
  if (ClocksChange(day)) return normal;
  if (IsWeekOfSleep(settings.seed, day.number)) return DayKind::kOff;
  if (HasWrongClock(settings.seed, day.number)) return DayKind::kOffice;
  if (draw <= (weekend ? 18 : 4)) return DayKind::kOff;
  if (draw <= (weekend ? 22 : 6)) return DayKind::kNothingMeasured;
  if (draw <= (weekend ? 30 : 9)) return DayKind::kSingleSample;
  return normal;
}

/// Whether the notebook stays awake across the midnight that ends this day.
bool StaysAwakeAfter(const ModelSettings& settings, std::int64_t dayNumber) {
  return Random(settings.seed, dayNumber, kNightPurpose).Chance(30);
}

void AddOfficeHours(Random& random, std::vector<Session>& sessions) {
  const std::int64_t lunch = 12 * kHour + random.Between(-20, 40) * kMinute;
  sessions.push_back({8 * kHour + random.Between(-1800, 3600), lunch});
  sessions.push_back(
      {lunch + random.Between(20, 60) * kMinute, 17 * kHour + random.Between(-60, 90) * kMinute});
  if (random.Chance(40)) {
    sessions.push_back({20 * kHour + random.Between(0, 3600), 22 * kHour + random.Between(0, 900)});
  }
}

void AddLeisureHours(Random& random, std::vector<Session>& sessions) {
  const std::int64_t count = random.Between(1, 4);
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t begin = random.Between(9 * kHour, 21 * kHour);
    sessions.push_back({begin, begin + random.Between(10 * kMinute, 150 * kMinute)});
  }
}

void AddNights(const ModelSettings& settings, const ModelDay& day, Random& random,
               std::vector<Session>& sessions) {
  const std::int64_t late = random.Between(10 * kMinute, 100 * kMinute);
  const std::int64_t early = random.Between(10 * kMinute, 90 * kMinute);
  if (StaysAwakeAfter(settings, day.number - 1)) sessions.push_back({random.Between(0, 50), late});
  if (StaysAwakeAfter(settings, day.number)) {
    sessions.push_back({day.lengthSeconds - early, day.lengthSeconds});
  }
  // Awake while the clocks change, so that the skipped and the repeated hour have samples.
  if (ClocksChange(day)) sessions.push_back({30 * kMinute, 5 * kHour});
}

/// Sorted by time, overlapping sessions joined, cut at the end of the day.
std::vector<Session> Normalised(std::vector<Session> sessions, std::int64_t dayEnd) {
  std::sort(sessions.begin(), sessions.end(),
            [](const Session& left, const Session& right) { return left.begin < right.begin; });
  std::vector<Session> result;
  for (Session session : sessions) {
    session.end = std::min(session.end, dayEnd);
    if (!result.empty() && session.begin <= result.back().end) {
      result.back().end = std::max(result.back().end, session.end);
    } else {
      result.push_back(session);
    }
  }
  return result;
}

std::string Padded(std::int64_t value, std::size_t digits) {
  std::string text = std::to_string(value);
  return text.size() < digits ? std::string(digits - text.size(), '0') + text : text;
}

/// A whole or a decimal number, with few digits or as many as a double has.
std::string PowerText(std::int64_t milliwatts, Random& random) {
  const std::int64_t form = random.Between(1, 100);
  const std::string whole = std::to_string(milliwatts / 1000);
  if (form <= 25) return whole;
  if (form <= 40) return whole + "." + std::to_string(milliwatts / 100 % 10);
  if (form <= 92) return whole + "." + Padded(milliwatts % 1000, 3);
  // Two statements: the order in which the operands of one sum are evaluated is not fixed.
  const std::string middle = Padded(random.Between(0, 999'999'999), 9);
  const std::string tail = std::to_string(random.Between(1, 999));
  return whole + "." + Padded(milliwatts % 1000, 3) + middle + tail;
}

/// Writes the samples of each session in turn.
class SampleWriter {
 public:
  SampleWriter(const ModelSettings& settings, Random& random)
      : period_(std::max<std::int64_t>(settings.periodSeconds, 1)), random_(random) {}

  void Write(const Session& session, bool atOffice) {
    charging_ = random_.Chance(atOffice ? 75 : 35);
    for (std::int64_t at = session.begin; at < session.end; at += NextStep()) {
      if (random_.Chance(2)) charging_ = !charging_;
      WriteMoment(at);
    }
  }

  std::vector<ModelSample> Take() { return std::move(samples_); }

  void WriteMoment(std::int64_t at) {
    const std::int64_t oddity = random_.Between(1, 100);
    if (oddity <= 4) WriteOther(at);
    if (oddity != 5) WriteCounted(at);
    if (oddity >= 97) WriteOther(at);
  }

 private:
  std::int64_t NextStep() {
    // Around the longest interval that counts, and a real sleep.
    static constexpr std::array<std::int64_t, 6> kPauses = {599, 600, 601, 660, 1500, 4000};
    if (!random_.Chance(3)) return period_;
    return kPauses[static_cast<std::size_t>(random_.Between(0, 5))];
  }

  void WriteCounted(std::int64_t at) {
    const std::int64_t milliwatts =
        charging_ ? random_.Between(18'000, 65'000) : random_.Between(0, 28'000);
    const bool powerless = random_.Between(1, 400) == 1;
    samples_.push_back({at, charging_ ? "PCM_CHARGER" : "PCM_SENSOR",
                        powerless ? std::string() : PowerText(milliwatts, random_)});
  }

  void WriteOther(std::int64_t at) {
    static constexpr std::array<const char*, 4> kTypes = {"PCM_TEMPERATURE", "PCM_SCREEN",
                                                          "PCM_SENSOR2", "pcm_charger"};
    const char* type = kTypes[static_cast<std::size_t>(random_.Between(0, 3))];
    const bool powerless = random_.Chance(40);
    samples_.push_back(
        {at, type, powerless ? std::string() : PowerText(random_.Between(0, 90'000), random_)});
  }

  std::int64_t period_;
  Random& random_;
  bool charging_ = false;
  std::vector<ModelSample> samples_;
};

/// Sets the clock back from a sample on at which the notebook is awake.
void SetClockBack(const WrongClock& clock, std::vector<ModelSample>& samples) {
  bool isBehind = false;
  for (std::size_t i = 1; i < samples.size(); ++i) {
    const std::int64_t since = samples[i].offsetSeconds - samples[i - 1].offsetSeconds;
    isBehind |= samples[i].offsetSeconds >= clock.fromSecond && since < kSmallestSetBackSeconds;
    if (isBehind) samples[i].clockSeconds = -clock.behindSeconds;
  }
}

std::vector<Session> PlanSessions(const ModelSettings& settings, const ModelDay& day, DayKind kind,
                                  Random& random) {
  std::vector<Session> sessions;
  if (kind == DayKind::kOffice) {
    AddOfficeHours(random, sessions);
  } else {
    AddLeisureHours(random, sessions);
  }
  AddNights(settings, day, random, sessions);
  return Normalised(std::move(sessions), day.lengthSeconds);
}

}  // namespace

std::optional<std::vector<ModelSample>> MakeDay(const ModelSettings& settings,
                                                const ModelDay& day) {
  Random plan(settings.seed, day.number, kPlanPurpose);
  Random random(settings.seed, day.number, kSamplePurpose);
  const DayKind kind = ChooseKind(settings, day, plan);
  SampleWriter writer(settings, random);
  if (kind == DayKind::kOff) return std::nullopt;
  if (kind == DayKind::kNothingMeasured) return std::vector<ModelSample>();
  if (kind == DayKind::kSingleSample) {
    // Often so close to midnight that the interval to the neighbouring day counts.
    writer.WriteMoment(plan.Chance(50) ? plan.Between(0, 300) : plan.Between(0, kNormalDaySeconds));
    std::vector<ModelSample> samples = writer.Take();
    samples.resize(std::min<std::size_t>(samples.size(), 1));
    return samples;
  }
  for (const Session& session : PlanSessions(settings, day, kind, plan)) {
    writer.Write(session, kind == DayKind::kOffice);
  }
  std::vector<ModelSample> samples = writer.Take();
  if (HasWrongClock(settings.seed, day.number)) {
    SetClockBack(WrongClockOf(settings.seed, day.number / kHabitDays), samples);
  }
  return samples;
}

}  // namespace Standin
