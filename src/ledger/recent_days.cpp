#include "ledger/recent_days.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "base/json_limits.h"
#include "base/json_rows.h"
#include "base/json_text.h"
#include "base/word_scan.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

bool IsLong(std::string_view text) { return text.size() > RecentDays::kLongTextBytes; }

std::shared_ptr<const DaySummary> Parse(JsonText& text) {
  DaySummaryMaker samples;
  if (ReadJsonRows(text, kSampleMembers, samples) != JsonRowsOutcome::kRows) return nullptr;
  return std::make_shared<const DaySummary>(samples.Finish());
}

}  // namespace

std::shared_ptr<const DaySummary> RecentDays::Read(const std::wstring& path) {
  const auto before = std::ranges::find(days_, path, &Day::path);
  if (before != days_.end() && JsonText::IsTextOf(path, kLargestDataFileBytes, before->text)) {
    return before->summary;
  }
  std::optional<JsonText> text = JsonText::TryRead(path, kLargestDataFileBytes);
  if (!text) return nullptr;
  const auto known = std::ranges::find_if(
      days_, [&](const Day& day) { return IsSameText(day.text, text->View()); });
  if (known != days_.end()) return known->summary;

  if (!MakeRoom(path, text->View())) return Parse(*text);
  Day day{path, std::string(text->View()), nullptr};
  day.summary = Parse(*text);  // changes the text
  const auto place = std::ranges::upper_bound(days_, path, {}, &Day::path);
  return days_.insert(place, std::move(day))->summary;
}

bool RecentDays::MakeRoom(const std::wstring& path, std::string_view text) {
  if (IsLong(text)) {
    const auto other = std::ranges::find_if(days_, IsLong, &Day::text);
    if (other != days_.end() && other->path < path) return false;
    if (other != days_.end()) days_.erase(other);
  }
  if (days_.size() < kMostDays) return true;
  if (days_.back().path < path) return false;
  days_.pop_back();
  return true;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
