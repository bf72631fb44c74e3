#include "reports/power_report.h"

#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string_view>

#include "base/date_text.h"
#include "base/time_reader.h"
#include "base/utf8_text.h"
#include "base/wide_file.h"
#include "reports/decimal_text.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr wchar_t kAppId[] = L"AppId";
constexpr wchar_t kTimeStamp[] = L"TimeStamp";
constexpr wchar_t kEnergy[] = L"TotalEnergyConsumption";
constexpr wchar_t kEnergyValue[] = L"Value";

/// Like pugixml's own loader, which has no limit: reads the whole file into a block that the
/// document then owns, and parses it with default options.
bool Load(std::FILE* file, std::size_t bytes, std::size_t mostTreeBytes,
          pugi::xml_document& document) {
  std::unique_ptr<void, pugi::deallocation_function> block(
      pugi::get_memory_allocation_function()(bytes), pugi::get_memory_deallocation_function());
  if (!block || std::fread(block.get(), 1, bytes, file) != bytes) return false;
  if (MostReportTreeBytes({static_cast<const char*>(block.get()), bytes}) > mostTreeBytes) {
    return false;
  }
  return document.load_buffer_inplace_own(block.release(), bytes);
}

bool LoadFile(const std::wstring& path, std::size_t mostTreeBytes, pugi::xml_document& document) {
  // With full sharing, so that no day's rows are lost while a virus scanner has the report open.
  const UniqueFile file = OpenSharedForReading(path);
  if (!file) return false;
  const std::int64_t length = LengthBytes(file.get());
  if (length <= 0 || MostReportTextBytes(static_cast<std::uint64_t>(length)) > mostTreeBytes) {
    return false;
  }
  return Load(file.get(), static_cast<std::size_t>(length), mostTreeBytes, document);
}

/// The names under which the report sums up energy that belongs to no application.
bool IsNoApplication(std::string_view name) {
  return name == "Unknown" || name == "System Interrupts";
}

std::optional<std::int32_t> TryEnergy(const pugi::xml_node& row) {
  const pugi::xml_node energy = row.child(kEnergy);
  if (!energy) return std::nullopt;
  return DecimalNumber(energy.attribute(kEnergyValue).value());
}

class RowReader {
 public:
  RowReader(const ReportingPeriod& period, DisplayNames& names, PowerLog& log)
      : period_(period), names_(names), log_(log) {}

  void Read(const pugi::xml_node& row) {
    const std::string name = ToUtf8(row.attribute(kAppId).value());
    if (IsNoApplication(name)) return;
    const LocalTime time = times_.Read(row.attribute(kTimeStamp).value());
    if (!period_.Includes(time.instant)) return;

    const auto energy = TryEnergy(row);
    // Kept on purpose: a new row without an energy takes the one of the row read before it (test
    // ReadPowerReportTest.RowWithoutEnergyRepeatsThatOfThePrecedingRow).
    energy_ = energy.value_or(energy_);
    if (log_.TryAddEnergy(name, time.instant, energy.value_or(0))) return;
    log_.Append({name, names_.Resolve(name), RowTime(time), energy_});
  }

 private:
  const ReportingPeriod& period_;
  DisplayNames& names_;
  PowerLog& log_;
  TimeReader times_{kTimeStampFormat};
  std::int32_t energy_ = 0;
};

}  // namespace

void ReadPowerReport(const std::wstring& path, const ReportingPeriod& period, DisplayNames& names,
                     PowerLog& log, std::size_t mostTreeBytes) {
  pugi::xml_document document;
  if (!LoadFile(path, mostTreeBytes, document)) return;

  RowReader reader(period, names, log);
  for (const pugi::xml_node& row : document.document_element().children()) {
    if (row.type() == pugi::node_element) reader.Read(row);
  }
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
