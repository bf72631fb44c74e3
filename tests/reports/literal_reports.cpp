#include "reports/literal_reports.h"

#include <rapidjson/stringbuffer.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <pugixml.hpp>

#include "base/byte_text.h"
#include "base/date_text.h"
#include "base/utf8_text.h"
#include "catalogue/app_identity.h"
#include "reports/decimal_text.h"
#include "reports/power_store.h"

namespace TestSupport::Literal {

using namespace Wattleaf;

namespace {

template <typename Writer>
void Write(Writer& writer, const Row& row) {
  const auto text = [&writer](const std::string& value) {
    writer.String(value.data(), static_cast<rapidjson::SizeType>(value.size()));
  };
  writer.StartObject();
  writer.Key("Name");
  text(row.name);
  writer.Key("DisplayName");
  text(row.displayName);
  writer.Key("TimeStamp");
  text(FormatDateTime(row.time, "%Y-%m-%d:%T"));
  writer.Key("TotalEnergy");
  writer.Int64(row.energy);
  writer.EndObject();
}

/// The bytes of a row with the longest energy, and of the comma after it.
std::size_t BytesOf(Row row) {
  row.energy = std::numeric_limits<std::int64_t>::min();
  row.time = {.tm_mday = 1};
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  Write(writer, row);
  return buffer.GetSize() + 1;
}

/// The display name of an application, remembered in `known`.
std::string DisplayNameOf(const std::string& appId, const Apps& apps,
                          std::map<std::string, std::string>& known) {
  if (const auto found = known.find(appId); found != known.end()) return found->second;
  if (IsDevicePath(appId)) {
    if (apps.devicePrefix.empty()) return "";
    const auto path = TryDrivePath(appId, apps.devicePrefix);
    return path ? known[appId] = apps.describeFile(*path) : "";
  }
  std::string name;
  for (const auto& [packageName, record] : apps.packages) {
    if (IsPackageOf(packageName, appId)) name = known[appId] = record.DisplayName;
  }
  return name;
}

std::int64_t Low32(const rapidjson::Value& number) {
  return static_cast<std::int32_t>(static_cast<std::uint64_t>(StoredEnergy(number)));
}

DateTime TimeOf(const rapidjson::Value& text) {
  DateTime time;
  return ParseDateTime(time, text.GetString(), "%Y-%m-%d:%T");
}

/// Counts a row of the ranking if it has names.
struct RankedRow {
  std::string appId;
  std::string displayName;
};

std::optional<RankedRow> TryRankedRow(const rapidjson::Value& element,
                                      const DesktopApps& desktopApps) {
  const rapidjson::Value* name = TryStringMember(element, "Name");
  const rapidjson::Value* displayName = TryStringMember(element, "DisplayName");
  if (name == nullptr || displayName == nullptr) return std::nullopt;
  RankedRow row{TextOf(*name), TextOf(*displayName)};
  if (row.displayName.empty()) return std::nullopt;
  const char* begin = row.displayName.data();
  if (IsDevicePath(row.appId) &&
      !desktopApps.contains(WidenBytes(begin, begin + row.displayName.size()))) {
    return std::nullopt;
  }
  return row;
}

std::string CopyLogos(const std::string& appId, const PackagedApps& packages, const IconFile& file,
                      IconMaker& icons) {
  if (!file.StaysInDirectory()) return "";
  bool isCopied = false;
  for (const auto& [packageName, record] : packages) {
    if (IsPackageOf(packageName, appId)) isCopied = icons.CopyLogo(record.Logo, file.Path());
  }
  return isCopied ? file.Path() : "";
}

}  // namespace

Row* Log::TryFind(const std::string& name, const DateTime& time) {
  const std::int64_t instant = InstantOf(time);
  const auto found = std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) {
    return row.name == name && row.instant == instant;
  });
  return found != rows_.end() ? &*found : nullptr;
}

void Log::Append(const Row& row) {
  const std::int64_t instant = row.instant;
  if (instant <= droppedUpTo_ || TryFind(row.name, row.time) != nullptr) return;
  const std::size_t bytes = BytesOf(row);
  if (bytes > limits_.rowBytes || 1 + bytes > limits_.fileBytes) return;
  while (!Fits(bytes)) {
    const auto oldest = Oldest();
    const bool isRemoved = oldest != rows_.end() && oldest->instant < instant;
    droppedUpTo_ = isRemoved ? oldest->instant : instant;
    if (!isRemoved) return;
    rows_.erase(oldest);
  }
  rows_.push_back(row);
}

bool Log::Fits(std::size_t bytes) const {
  std::size_t sum = 1 + bytes;
  for (const Row& row : rows_) sum += BytesOf(row);
  return rows_.size() < limits_.rows && sum <= limits_.fileBytes;
}

/// Among the rows of one second the one that was added last.
std::vector<Row>::iterator Log::Oldest() {
  auto oldest = rows_.begin();
  for (auto row = rows_.begin(); row != rows_.end(); ++row) {
    if (row->instant <= oldest->instant) oldest = row;
  }
  return oldest;
}

void ReadReport(const std::filesystem::path& path, const ReportingPeriod& period, const Apps& apps,
                Log& log) {
  pugi::xml_document document;
  if (!document.load_file(path.c_str())) return;
  std::map<std::string, std::string> known;
  std::int32_t energy = 0;
  for (const pugi::xml_node& element : document.document_element().children()) {
    if (element.type() != pugi::node_element) continue;
    const std::string name = ToUtf8(element.attribute(L"AppId").value());
    if (name == "Unknown" || name == "System Interrupts") continue;
    DateTime time;
    ParseWideDateTime(time, element.attribute(L"TimeStamp").value());
    if (!period.Includes(InstantOf(time))) continue;
    const pugi::xml_node child = element.child(L"TotalEnergyConsumption");
    if (child) energy = DecimalNumber(child.attribute(L"Value").value());
    if (Row* row = log.TryFind(name, time)) {
      row->energy += child ? energy : 0;
    } else {
      log.Append({name, DisplayNameOf(name, apps, known), time, energy});
    }
  }
}

void MergeStore(const std::filesystem::path& path, const ReportingPeriod& period, Log& log) {
  const std::unique_ptr<GenericDocument> store(LoadJsonDocument(path.wstring()));
  if (!store || !store->IsArray()) return;
  for (const rapidjson::Value& element : store->GetArray()) {
    const rapidjson::Value* name = TryStringMember(element, "Name");
    const rapidjson::Value* displayName = TryStringMember(element, "DisplayName");
    const rapidjson::Value* energy = TryNumberMember(element, "TotalEnergy");
    const rapidjson::Value* timeStamp = TryStringMember(element, "TimeStamp");
    if (name == nullptr || displayName == nullptr || energy == nullptr || timeStamp == nullptr) {
      continue;
    }
    const DateTime time = TimeOf(*timeStamp);
    if (!period.Includes(InstantOf(time)) || log.TryFind(TextOf(*name), time)) continue;
    log.Append({TextOf(*name), TextOf(*displayName), time, Low32(*energy)});
  }
}

void WriteStore(const std::filesystem::path& path, const Log& log) {
  static_cast<void>(WriteJsonFile(path.wstring(), [&](JsonWriter& writer) {
    writer.StartArray();
    for (const Row& row : log.Rows()) Write(writer, row);
    writer.EndArray();
  }));
}

Ranking Rank(const rapidjson::Value& rows, const ReportingPeriod& period,
             const DesktopApps& desktopApps, const PackagedApps& packagedApps,
             std::string_view iconDirectory, IconMaker& icons) {
  const auto isCounted = [&](const rapidjson::Value& element) {
    const rapidjson::Value* timeStamp = TryStringMember(element, "TimeStamp");
    return timeStamp != nullptr && TryNumberMember(element, "TotalEnergy") != nullptr &&
           period.Includes(InstantOf(TimeOf(*timeStamp)));
  };
  std::int64_t total = 0;
  for (const rapidjson::Value& element : rows.GetArray()) {
    if (isCounted(element)) total += Low32(*TryNumberMember(element, "TotalEnergy"));
  }

  std::map<std::string, TopAppEntry> apps;
  std::map<std::string, std::string> iconByDisplayName;
  for (const rapidjson::Value& element : rows.GetArray()) {
    const auto row = isCounted(element) ? TryRankedRow(element, desktopApps) : std::nullopt;
    if (!row) continue;
    std::string icon;
    if (const auto known = iconByDisplayName.find(row->displayName);
        known != iconByDisplayName.end()) {
      icon = known->second;
    } else {
      const IconFile file{iconDirectory, row->displayName};
      icon = IsDevicePath(row->appId) ? icons.ExportAppIcon(row->appId, file)
                                      : CopyLogos(row->appId, packagedApps, file, icons);
      if (!icon.empty()) iconByDisplayName[row->displayName] = icon;
    }
    const std::int64_t energy = StoredEnergy(*TryNumberMember(element, "TotalEnergy"));
    const float share = static_cast<float>(energy) * 100.0F / static_cast<float>(total);
    const auto [entry, isNew] = apps.try_emplace(row->displayName);
    if (isNew) entry->second = {row->displayName, icon, share};
    if (isNew) continue;
    entry->second.Value += share;
    if (entry->second.Icon.empty()) entry->second.Icon = icon;
  }

  Ranking ranking;
  for (const auto& [name, entry] : apps) ranking.push_back(entry);
  KeepLargest(ranking);
  return ranking;
}

}  // namespace TestSupport::Literal
