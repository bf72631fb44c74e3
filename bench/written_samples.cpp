#include "written_samples.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>

namespace Bench {

namespace {

std::string TimeText(const std::string& date, std::size_t second, bool isPadded) {
  const int width = isPadded ? 2 : 1;
  char text[64];
  std::snprintf(text, sizeof(text), "%sT%0*zu:%0*zu:%0*zu", date.c_str(), width, second / 3600,
                width, second / 60 % 60, width, second % 60);
  return text;
}

}  // namespace

std::string DateOfDay(int day) {
  const std::chrono::year_month_day date{std::chrono::sys_days{std::chrono::year{2026} / 6 / 1} +
                                         std::chrono::days{day}};
  char text[32];
  std::snprintf(text, sizeof(text), "%04d-%02u-%02u", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
  return text;
}

std::string SamplesText(const WrittenSamples& samples) {
  const std::string date = DateOfDay(samples.day);
  std::string list = "[";
  for (std::size_t i = 0; i < samples.count; ++i) {
    const auto second = static_cast<std::size_t>(samples.secondsApart) * i % 86400;
    const std::size_t hundredths = samples.hasPower ? 500 + i * 7919 % 2500 : 0;
    char text[160];
    std::snprintf(text, sizeof(text),
                  R"(%s{"TelemetryType":"PCM_SENSOR","SampleTime":"%s","Power":%zu.%02zu,)"
                  R"("Unit":"W"})",
                  i == 0 ? "" : ",", TimeText(date, second, samples.isPadded).c_str(),
                  hundredths / 100, hundredths % 100);
    list += text;
  }
  return list + "]";
}

void WriteSamples(const std::filesystem::path& path, const WrittenSamples& samples) {
  if (!std::filesystem::exists(path)) {
    std::ofstream(path, std::ios::binary) << SamplesText(samples);
  }
}

}  // namespace Bench
