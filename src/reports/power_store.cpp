#include "reports/power_store.h"

#include <string_view>

#include "base/date_text.h"
#include "base/json_member.h"
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

/// The rows as the events of a JSON text; names are handed over uncopied.
class RowEvents {
 public:
  explicit RowEvents(const PowerLog& log) : log_(log) {}

  bool operator()(GenericDocument& document) const {
    document.StartArray();
    for (const PowerLogRecord& record : log_.Records()) {
      document.StartObject();
      Key(document, kNameKey);
      Text(document, record.Name, /*isCopied=*/false);
      Key(document, kDisplayNameKey);
      Text(document, record.DisplayName, /*isCopied=*/false);
      Key(document, kTimeStampKey);
      Text(document, FormatDateTime(record.TimeStamp, kTimeStampFormat), /*isCopied=*/true);
      Key(document, kTotalEnergyKey);
      document.Int64(record.TotalEnergy);
      document.EndObject(/*memberCount=*/4);
    }
    return document.EndArray(static_cast<rapidjson::SizeType>(log_.Records().size()));
  }

 private:
  static void Key(GenericDocument& document, std::string_view key) {
    Text(document, key, /*isCopied=*/false);
  }

  static void Text(GenericDocument& document, std::string_view text, bool isCopied) {
    document.String(text.data(), static_cast<rapidjson::SizeType>(text.size()), isCopied);
  }

  const PowerLog& log_;
};

}  // namespace

void MergePowerStore(const GenericDocument& store, const ReportingPeriod& period, PowerLog& log) {
  if (!store.IsArray()) return;
  for (const rapidjson::Value& row : store.GetArray()) MergeRow(row, period, log);
}

// Through events, which make each object as large as its members: adding them one by one would
// reserve room for sixteen.
GenericDocument PowerStoreDocument(const PowerLog& log) {
  GenericDocument document;
  RowEvents events(log);
  document.Populate(events);
  return document;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
