// Any bytes as a report of application energy, and the result as the store of the next run: merging
// the store must return every row and write the same text again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "base/date_text.h"
#include "reports/power_report.h"
#include "reports/power_store.h"

using namespace Zq::Gantry::Server::Services::Wattleaf;

namespace {

std::filesystem::path ScratchFile() {
  std::string path = (std::filesystem::temp_directory_path() / "wattleaf-fuzz-XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) std::abort();
  return path + "/report.xml";
}

std::string StoreText(const PowerLog& log) {
  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  if (!PowerStoreDocument(log).Accept(writer)) std::abort();
  return {buffer.GetString(), buffer.GetSize()};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path path = ScratchFile();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  DateTime now;
  ParseDateTime(now, "2026-11-14:10:30:15", kTimeStampFormat);
  const ReportingPeriod period(now, kPowerStoreDays);
  const PackagedApps packages{{"Orchard.Notes", {"Orchard Notes", ""}}};
  DisplayNames names("\\Device\\HarddiskVolume3", packages,
                     [](const std::string& file) { return file; });
  PowerLog log;
  ReadPowerReport(path.wstring(), period, names, log);

  const std::string text = StoreText(log);
  GenericDocument store;
  if (store.Parse(text.data(), text.size()).HasParseError()) std::abort();
  PowerLog next;
  MergePowerStore(store, period, next);
  if (next.Records().size() != log.Records().size()) std::abort();
  MergePowerStore(store, period, log);
  if (StoreText(log) != text) std::abort();
  return 0;
}
