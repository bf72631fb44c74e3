#include "reports/power_store.h"

#include "ledger/date_text.h"
#include "ledger/json_member.h"
#include "reports/power_log_format.h"
#include "reports/stored_energy.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

void MergeRow(const rapidjson::Value& row, const ReportingPeriod& period, PowerLog& log) {
  const rapidjson::Value* name = TryStringMember(row, kNameKey);
  const rapidjson::Value* displayName = TryStringMember(row, kDisplayNameKey);
  const rapidjson::Value* energy = TryNumberMember(row, kTotalEnergyKey);
  const rapidjson::Value* timeStamp = TryStringMember(row, kTimeStampKey);
  if (name == nullptr || displayName == nullptr || energy == nullptr || timeStamp == nullptr) {
    return;
  }
  DateTime time;
  ParseDateTime(time, timeStamp->GetString(), kTimeStampFormat);
  if (!period.Includes(time)) return;
  if (log.TryFind(std::string_view(name->GetString(), name->GetStringLength()), time)) return;
  // Kept on purpose: what was written in 64 bits comes back as its low 32 (test
  // PowerStore.CutsEnergyToItsLow32Bits).
  log.Append({TextOf(*name), TextOf(*displayName), time, StoredEnergyLow32(*energy)});
}

rapidjson::Value JsonText(const std::string& text, GenericDocument::AllocatorType& allocator) {
  return {text.data(), static_cast<rapidjson::SizeType>(text.size()), allocator};
}

}  // namespace

void MergePowerStore(const GenericDocument& store, const ReportingPeriod& period, PowerLog& log) {
  if (!store.IsArray()) return;
  for (const rapidjson::Value& row : store.GetArray()) MergeRow(row, period, log);
}

GenericDocument PowerStoreDocument(const PowerLog& log) {
  GenericDocument document(rapidjson::kArrayType);
  auto& allocator = document.GetAllocator();
  document.Reserve(static_cast<rapidjson::SizeType>(log.Records().size()), allocator);
  for (const PowerLogRecord& record : log.Records()) {
    const std::string time = FormatDateTime(record.TimeStamp, kTimeStampFormat);
    rapidjson::Value row(rapidjson::kObjectType);
    row.AddMember(rapidjson::StringRef(kNameKey), JsonText(record.Name, allocator), allocator);
    row.AddMember(rapidjson::StringRef(kDisplayNameKey), JsonText(record.DisplayName, allocator),
                  allocator);
    row.AddMember(rapidjson::StringRef(kTimeStampKey), JsonText(time, allocator), allocator);
    row.AddMember(rapidjson::StringRef(kTotalEnergyKey), record.TotalEnergy, allocator);
    document.PushBack(row, allocator);
  }
  return document;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
