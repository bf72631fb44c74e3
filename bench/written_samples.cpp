#include "written_samples.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>

namespace Bench {

std::string DateOfDay(int day) {
  const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::year{2026} / 6 / 1} +
                                         std::chrono::days{day}};
  char text[32];
  std::snprintf(text, sizeof(text), "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

void WriteSamples(const std::filesystem::path& path, const WrittenSamples& samples) {
  if (std::filesystem::exists(path)) return;
  std::ofstream file(path, std::ios::binary);
  const std::string date = DateOfDay(samples.day);
  for (std::size_t i = 0; i < samples.count; ++i) {
    const auto second = static_cast<std::size_t>(samples.secondsApart) * i % 86400;
    const std::size_t hundredths = samples.hasPower ? 500 + i * 7919 % 2500 : 0;
    char text[160];
    std::snprintf(text, sizeof(text),
                  R"(%c{"TelemetryType":"PCM_SENSOR","SampleTime":"%sT%02zu:%02zu:%02zu",)"
                  R"("Power":%zu.%02zu,"Unit":"W"})",
                  i == 0 ? '[' : ',', date.c_str(), second / 3600, second / 60 % 60, second % 60,
                  hundredths / 100, hundredths % 100);
    file << text;
  }
  file << (samples.count == 0 ? "[]" : "]");
}

}  // namespace Bench
