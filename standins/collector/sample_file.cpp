// Stand-in: one day's samples, and the files that hold them.

#include "sample_file.h"

#include <windows.h>

#include <dpapi.h>
#include <wincrypt.h>

#include <cstring>
#include <stdexcept>

#include "platform/win32/owners.h"

namespace Standin {

namespace {

/// Latin-1 to UTF-16LE.
std::string Widen(const std::string& text) {
  std::string wide;
  wide.reserve(text.size() * 2);
  for (const char c : text) {
    wide += c;
    wide += '\0';
  }
  return wide;
}

std::string Protect(std::string plain) {
  DATA_BLOB in{static_cast<DWORD>(plain.size()), reinterpret_cast<BYTE*>(plain.data())};
  DATA_BLOB out{};
  if (!CryptProtectData(&in, L"", nullptr, nullptr, nullptr, CRYPTPROTECT_LOCAL_MACHINE, &out)) {
    throw std::runtime_error("the collector cannot protect its samples");
  }
  const Zq::Gantry::Platform::UniqueLocalBlock block(out.pbData);
  return {reinterpret_cast<const char*>(out.pbData), out.cbData};
}

std::string ToBase64(const std::string& bytes) {
  const auto* data = reinterpret_cast<const BYTE*>(bytes.data());
  const auto size = static_cast<DWORD>(bytes.size());
  DWORD chars = 0;
  CryptBinaryToStringA(data, size, CRYPT_STRING_BASE64, nullptr, &chars);
  std::string text(chars, '\0');
  if (!CryptBinaryToStringA(data, size, CRYPT_STRING_BASE64, text.data(), &chars)) {
    throw std::runtime_error("the collector cannot encode its samples");
  }
  // Wine counts two characters too many if the last group is padded and would begin a line.
  text.resize(std::strlen(text.c_str()));
  return text;
}

std::string Member(const char* name, const std::string& value) {
  return std::string("\"") + name + "\":" + value;
}

std::string Quoted(const std::string& text) { return "\"" + text + "\""; }

/// The text of a sample file: the power is a number, and there is a member that the library
/// ignores.
std::string FileText(const std::vector<WrittenSample>& samples) {
  std::string text = "[";
  for (const WrittenSample& sample : samples) {
    if (text.size() > 1) text += ',';
    text += '{' + Member("TelemetryType", Quoted(sample.type)) + ',' +
            Member("SampleTime", Quoted(sample.time));
    if (!sample.power.empty()) text += ',' + Member("Power", sample.power);
    text += ',' + Member("Unit", Quoted(sample.type == "PCM_TEMPERATURE" ? "\xB0\x43" : "W")) + '}';
  }
  return text + "]";
}

/// The same in plain text: the power is a string with the digits of the number.
std::string ListText(const std::vector<WrittenSample>& samples) {
  std::string text = "[";
  for (const WrittenSample& sample : samples) {
    if (text.size() > 1) text += ",\n";
    text += '{' + Member("TelemetryType", Quoted(sample.type)) + ',' +
            Member("SampleTime", Quoted(sample.time)) + ',' +
            Member("Power", sample.power.empty() ? "null" : Quoted(sample.power)) + '}';
  }
  return text + "]";
}

}  // namespace

std::optional<std::vector<WrittenSample>> TakeSamples(const ModelSettings& settings,
                                                      const CalendarDay& day, std::int64_t now) {
  const auto model = MakeDay(settings, {day.number, day.end - day.begin});
  if (!model) return std::nullopt;
  std::vector<WrittenSample> samples;
  for (const ModelSample& sample : *model) {
    const std::int64_t instant = day.begin + sample.offsetSeconds;
    if (instant > now) break;
    samples.push_back({sample.type, LocalTimeText(instant + sample.clockSeconds), sample.power});
  }
  // A day has no file before its first sample.
  if (samples.empty() && !model->empty()) return std::nullopt;
  return samples;
}

std::string SampleFileBytes(const std::vector<WrittenSample>& samples) {
  return ToBase64(Protect(Widen(FileText(samples))));
}

std::string TruthText(const std::map<std::string, std::vector<WrittenSample>>& days) {
  std::string text = "{\"days\":[";
  for (const auto& [date, samples] : days) {
    if (text.back() != '[') text += ",\n";
    text += '{' + Member("date", Quoted(date)) + ',' + Member("samples", ListText(samples)) + '}';
  }
  return text + "]}\n";
}

}  // namespace Standin
