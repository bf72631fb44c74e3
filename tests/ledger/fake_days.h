#pragma once

#include <initializer_list>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "base/date_text.h"
#include "ledger/sample_files.h"

namespace TestSupport {

/// One sample as JSON text: "2024-05-06T10:00:00", the power as it stands in the text, the type.
inline std::string Sample(const std::string& time, const std::string& power = "36",
                          const std::string& type = "PCM_SENSOR") {
  return R"({"TelemetryType":")" + type + R"(","SampleTime":")" + time + R"(","Power":)" + power +
         "}";
}

/// A JSON array of such texts.
inline std::string List(const std::vector<std::string>& elements) {
  std::string text = "[";
  for (const std::string& element : elements) text += (text.size() > 1 ? "," : "") + element;
  return text + "]";
}

/// A document as the JSON loader gives it; null for a text that does not parse.
inline std::unique_ptr<Zq::Gantry::Server::Services::Wattleaf::GenericDocument> Document(
    const std::string& json) {
  auto document = std::make_unique<Zq::Gantry::Server::Services::Wattleaf::GenericDocument>();
  document->Parse(json.c_str());
  if (document->HasParseError()) return nullptr;
  return document;
}

/// A day at 00:00:00, as the ledger reads it from its file: "2024-05-06".
inline Zq::Gantry::Server::Services::Wattleaf::DateTime Day(const std::string& date) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  DateTime day;
  return ParseDateTime(day, date.c_str(), kDateFormat);
}

inline std::string DateOf(const Zq::Gantry::Server::Services::Wattleaf::DateTime& day) {
  using namespace Zq::Gantry::Server::Services::Wattleaf;
  return FormatDateTime(day, kDateFormat);
}

/// Days of samples by date, as JSON texts; a day that is not there is an empty array.
class FakeDays {
 public:
  FakeDays(std::initializer_list<std::pair<const std::string, std::string>> days) : days_(days) {}

  Zq::Gantry::Server::Services::Wattleaf::DayReader Reader() {
    return [this](const Zq::Gantry::Server::Services::Wattleaf::DateTime& day) {
      asked_.push_back(DateOf(day));
      const auto found = days_.find(asked_.back());
      return Document(found != days_.end() ? found->second : "[]");
    };
  }

  /// The days that were read, in order.
  const std::vector<std::string>& Asked() const { return asked_; }

 private:
  std::map<std::string, std::string> days_;
  std::vector<std::string> asked_;
};

}  // namespace TestSupport
