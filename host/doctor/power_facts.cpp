#include "doctor/power_facts.h"

#include <cstdint>
#include <map>
#include <pugixml.hpp>
#include <set>
#include <string>

#include "base/wide_file.h"
#include "reports/power_log.h"
#include "reports/power_report.h"

namespace WattleafHost {

namespace {

using namespace Zq::Gantry::Server::Services::Wattleaf;

/// From a cutoff outside the calendar, so that a row of any time counts.
constexpr std::int32_t kAllDays = 1'000'000;

bool IsXml(const std::wstring& path) {
  const UniqueFile file = OpenSharedForReading(path);
  if (!file) return false;
  const std::int64_t length = LengthBytes(file.get());
  if (length <= 0) return false;
  std::string text(static_cast<std::size_t>(length), '\0');
  if (std::fread(text.data(), 1, text.size(), file.get()) != text.size()) return false;
  pugi::xml_document document;
  return static_cast<bool>(document.load_buffer(text.data(), text.size()));
}

/// The text of an index of StoredRows::names; empty if the row has none.
std::string NameAt(const StoredRows& store, std::uint32_t index) {
  return index == StoredRow::kNoName ? std::string() : *store.names[index];
}

}  // namespace

ReportFacts ReadReportFacts(const std::wstring& path, const DateTime& now, DisplayNames& names) {
  ReportFacts facts;
  facts.state = IsXml(path) ? ReportFacts::State::kRead : ReportFacts::State::kNoXml;
  if (facts.state != ReportFacts::State::kRead) return facts;
  PowerLog all;
  ReadPowerReport(path, ReportingPeriod(now, kAllDays), names, all);
  facts.rows = all.Size();
  PowerLog recent;
  ReadPowerReport(path, ReportingPeriod(now, kPowerStoreDays), names, recent);
  facts.rowsOfPeriod = recent.Size();
  recent.ForEach(
      [&facts](const PowerLogRecord& row) { facts.namedRows += row.DisplayName.empty() ? 0 : 1; });
  return facts;
}

void CountStoreRows(const StoredRows& store, StoreFacts& facts) {
  std::map<std::string, std::set<std::string>> displayNames;
  for (const StoredRow& row : store.rows) {
    const std::string displayName = NameAt(store, row.displayName);
    ++facts.rows;
    facts.namedRows += displayName.empty() ? 0 : 1;
    // A row without a name belongs to no program.
    const std::string name = NameAt(store, row.name);
    if (!name.empty()) displayNames[name].insert(displayName);
  }
  for (const auto& [name, texts] : displayNames) {
    if (texts.contains("")) facts.unnamedPrograms.push_back(name);
    if (texts.size() > (texts.contains("") ? 2U : 1U)) facts.renamedPrograms.push_back(name);
  }
}

}  // namespace WattleafHost
