#include "collection/ledger_fixture.h"

#include <chrono>
#include <cstdio>
#include <stdexcept>

#include "ledger/encrypted_samples.h"
#include "ledger/fake_days.h"

namespace TestSupport {

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

__time64_t g_now = 0;
bool g_isBroken = false;

__time64_t FakeTime(__time64_t* now) {
  if (g_isBroken) throw 5;  // not a std::exception: operations must catch everything
  if (now != nullptr) *now = g_now;
  return g_now;
}

std::wstring g_failingPath;
DWORD g_attributesError = 0;
DWORD(WINAPI* g_realAttributes)(const wchar_t*) = nullptr;

DWORD WINAPI FailingAttributes(const wchar_t* path) {
  if (g_failingPath != path) return g_realAttributes(path);
  SetLastError(g_attributesError);
  return INVALID_FILE_ATTRIBUTES;
}

std::wstring Wide(const std::string& ascii) { return {ascii.begin(), ascii.end()}; }

}  // namespace

FakeClock::FakeClock() : patch_("_time64", &FakeTime) {}

void FakeClock::Set(const std::string& localTime) {
  struct tm fields {};
  const int count =
      std::sscanf(localTime.c_str(), "%d-%d-%d%*1[ T]%d:%d:%d", &fields.tm_year, &fields.tm_mon,
                  &fields.tm_mday, &fields.tm_hour, &fields.tm_min, &fields.tm_sec);
  if (count != 6) throw std::invalid_argument(localTime);
  fields.tm_year -= 1900;
  fields.tm_mon -= 1;
  fields.tm_isdst = -1;
  g_now = _mktime64(&fields);
  g_isBroken = false;
}

void FakeClock::Break() { g_isBroken = true; }

FakeAttributesFailure::FakeAttributesFailure(const std::wstring& path, DWORD error)
    : patch_("GetFileAttributesW", &FailingAttributes) {
  g_failingPath = path;
  g_attributesError = error;
  g_realAttributes = patch_.Original<DWORD WINAPI(const wchar_t*)>();
}

LedgerFixture::LedgerFixture() { FakeClock::Set("2024-05-08 14:30:00"); }

std::wstring LedgerFixture::SamplePath(const std::string& date) const {
  return folder.File(L"PcmSampleData_" + Wide(date) + L".json");
}

std::wstring LedgerFixture::LedgerPath() const { return folder.File(L"PowerConsumption.json"); }

std::wstring LedgerFixture::PlainCopy(const std::string& date) const {
  return folder.File(L"unencrypt-PcmSampleData_" + Wide(date) + L".json");
}

void LedgerFixture::WriteSamples(const std::string& date,
                                 const std::vector<std::string>& times) const {
  std::vector<std::string> elements;
  for (const std::string& time : times) elements.push_back(Sample(date + "T" + time));
  WriteEncrypted(date, List(elements));
}

void LedgerFixture::WriteEncrypted(const std::string& date, const std::string& json) const {
  WriteWholeFile(SamplePath(date), Encrypted(Utf16(json)));
}

void LedgerFixture::WriteOneInterval(const std::string& date) const {
  WriteSamples(date, {"09:00:00", "10:00:00", "10:05:00"});
}

float LedgerFixture::Booked(const std::string& date) const {
  const auto entry = helper.dailyLedger.find(Day(date));
  return entry != helper.dailyLedger.end() ? entry->second : -1.0F;
}

void DailyPassFixture::RunAt(const std::string& localTime) {
  FakeClock::Set(localTime);
  Run();
}

void DailyPassFixture::WriteFromMidnightToMidnight(const std::string& date) const {
  WriteSamples(date, {"00:02:00", "12:00:00", "12:05:00", "23:58:00"});
}

std::vector<std::wstring> DailyPassFixture::DecryptedDates() const {
  const std::wstring start = L"Decrypting file :" + folder.Path() + L"\\PcmSampleData_";
  std::vector<std::wstring> dates;
  for (const LogRecord& record : log.Records()) {
    if (record.text.starts_with(start)) dates.push_back(record.text.substr(start.size(), 10));
  }
  return dates;
}

void DailyPassFixture::WriteLedger(const std::vector<std::string>& elements) const {
  WriteWholeFile(LedgerPath(), List(elements));
}

bool DailyPassFixture::LedgerFileHolds(const std::string& date, const std::string& value) const {
  return LedgerText().find(LedgerElement(date, value)) != std::string::npos;
}

std::vector<LogRecord> DailyPassFixture::Problems() const {
  std::vector<LogRecord> problems;
  for (const LogRecord& record : log.Records()) {
    if (record.level != Standin::LogLevel::kInfo) problems.push_back(record);
  }
  return problems;
}

void DailyPassFixture::ExpectNoSaveWhile(const std::function<std::shared_ptr<void>()>& fail) {
  // The 1st has a value and no samples, the 3rd has samples and no value.
  const std::string content = List({LedgerElement("2024-05-01", "12.5")});
  WriteWholeFile(LedgerPath(), content);
  WriteOneInterval("2024-05-03");
  log.Clear();
  TestHelper other(folder.Path().c_str());
  other.dataChanged = false;
  {
    const std::shared_ptr<void> failure = fail();
    other.CalculateDailyPowerConsumption();
  }
  EXPECT_EQ(Problems(), std::vector<LogRecord>{Error(kSaveFailed)});
  EXPECT_EQ(LedgerText(), content);
  EXPECT_TRUE(HasSamples("2024-05-03"));
  EXPECT_TRUE(other.dataChanged);
  EXPECT_EQ(other.dailyLedger.at(Day("2024-05-03")), kThreeWh);

  other.dailyLedger.erase(Day("2024-05-03"));
  other.CalculateDailyPowerConsumption();
  EXPECT_EQ(Problems().size(), 1U);
  EXPECT_EQ(other.dailyLedger.at(Day("2024-05-01")), 12.5F);
  EXPECT_TRUE(LedgerFileHolds("2024-05-01", "12.5"));
  EXPECT_FALSE(HasSamples("2024-05-03"));
}

std::string LedgerElement(const std::string& date, const std::string& value) {
  return R"({"Key":")" + date + R"(","Value":)" + value + "}";
}

std::string DateBefore(const std::string& date, int days) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  std::sscanf(date.c_str(), "%d-%u-%u", &year, &month, &day);
  const std::chrono::year_month_day result =
      std::chrono::sys_days(std::chrono::year(year) / std::chrono::month(month) /
                            std::chrono::day(day)) -
      std::chrono::days(days);
  char text[32];
  std::snprintf(text, sizeof(text), "%04d-%02u-%02u", static_cast<int>(result.year()),
                static_cast<unsigned>(result.month()), static_cast<unsigned>(result.day()));
  return text;
}

}  // namespace TestSupport
