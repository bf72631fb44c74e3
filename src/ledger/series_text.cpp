#include "ledger/series_text.h"

#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include "base/byte_text.h"
#include "base/json_document.h"
#include "ledger/energy_arithmetic.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

using Allocator = GenericDocument::AllocatorType;

double ShownEnergy(const SeriesEntry& entry) {
  return static_cast<double>(FiniteOrZero(entry.energyWh));
}

rapidjson::Value RangeOf(const Series& series, Allocator& allocator) {
  double smallest = series.empty() ? 0.0 : ShownEnergy(series.front());
  double largest = smallest;
  for (const SeriesEntry& entry : series) {
    const double energy = ShownEnergy(entry);
    if (energy <= smallest) smallest = energy;
    if (energy >= largest) largest = energy;
  }
  rapidjson::Value range(rapidjson::kArrayType);
  range.PushBack(smallest, allocator);
  range.PushBack(largest, allocator);
  return range;
}

rapidjson::Value EntriesOf(const Series& series, const char* labelKey, Allocator& allocator) {
  rapidjson::Value entries(rapidjson::kArrayType);
  for (const SeriesEntry& entry : series) {
    rapidjson::Value label(entry.label.c_str(),
                           static_cast<rapidjson::SizeType>(entry.label.size()), allocator);
    rapidjson::Value object(rapidjson::kObjectType);
    object.AddMember(rapidjson::StringRef(labelKey), label, allocator);
    object.AddMember("Value", ShownEnergy(entry), allocator);
    entries.PushBack(object, allocator);
  }
  return entries;
}

}  // namespace

std::wstring SeriesText(const Series& series, const char* labelKey) {
  GenericDocument document(rapidjson::kObjectType);
  Allocator& allocator = document.GetAllocator();
  document.AddMember("Range", RangeOf(series, allocator), allocator);
  document.AddMember("Value", EntriesOf(series, labelKey, allocator), allocator);

  rapidjson::StringBuffer buffer;
  rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
  document.Accept(writer);
  return WidenBytes(buffer.GetString(), buffer.GetString() + buffer.GetSize());
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
