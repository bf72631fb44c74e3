#include "base/json_rows.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "base/json_parse.h"

namespace rapidjson {

/// The same as the parser's own function, but eight spaces at a time: a file may consist of them.
/// Only for texts with as many zeros at their end.
template <>
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name): theirs is `is`
inline void SkipWhitespace(InsituStringStream& stream) {
  constexpr std::string_view kSpaces = "        ";
  static_assert(kSpaces.size() <= Zq::Gantry::Server::Services::Wattleaf::JsonText::kZerosAtEnd);
  char* next = stream.src_;
  for (;;) {
    while (std::memcmp(next, kSpaces.data(), kSpaces.size()) == 0) next += kSpaces.size();
    if (*next != ' ' && *next != '\n' && *next != '\r' && *next != '\t') break;
    ++next;
  }
  stream.src_ = next;
}

}  // namespace rapidjson

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

/// The handler of one reading. Members are looked at on the level below the root's elements, and
/// anywhere deeper only the nesting is followed.
class RowCollector {
 public:
  RowCollector(std::span<const std::string_view> names, JsonRowSink& sink)
      : names_(names), sink_(sink), values_(names.size()), isKnown_(names.size()) {}

  [[nodiscard]] bool IsArray() const { return isArray_; }

  bool Null() { return Put(rapidjson::Value()); }
  bool Bool(bool value) { return Put(rapidjson::Value(value)); }
  bool Int(int value) { return Put(rapidjson::Value(value)); }
  bool Uint(unsigned value) { return Put(rapidjson::Value(value)); }
  bool Int64(std::int64_t value) { return Put(rapidjson::Value(value)); }
  bool Uint64(std::uint64_t value) { return Put(rapidjson::Value(value)); }
  bool Double(double value) { return Put(rapidjson::Value(value)); }
  /// Only for flags that the parser is not used with.
  bool RawNumber(const char*, rapidjson::SizeType, bool) { return false; }

  /// The text stands in the file's own text, which outlives the row.
  bool String(const char* text, rapidjson::SizeType length, bool) {
    return Put(rapidjson::Value(rapidjson::StringRef(text, length)));
  }

  bool Key(const char* text, rapidjson::SizeType length, bool) {
    if (depth_ != kMemberDepth) return true;
    field_ = kNoField;
    const std::string_view name(text, length);
    for (std::size_t i = 0; i < names_.size(); ++i) {
      if (names_[i] != name) continue;
      if (!isKnown_[i]) field_ = i;
      isKnown_[i] = true;
      break;
    }
    return true;
  }

  bool StartObject() { return Open(); }
  bool StartArray() {
    if (depth_ == 0) isArray_ = true;
    return Open();
  }
  bool EndObject(rapidjson::SizeType) { return Close(); }
  bool EndArray(rapidjson::SizeType) { return Close(); }

 private:
  static constexpr int kElementDepth = 1;  ///< inside the root
  static constexpr int kMemberDepth = 2;   ///< inside an element
  static constexpr std::size_t kNoField = static_cast<std::size_t>(-1);

  bool Put(rapidjson::Value value) {
    if (depth_ == kMemberDepth && field_ != kNoField) values_[field_] = std::move(value);
    if (depth_ == kElementDepth) EndElement();
    return true;
  }

  bool Open() {
    ++depth_;
    return true;
  }

  bool Close() {
    if (--depth_ == kElementDepth) EndElement();
    return true;
  }

  void EndElement() {
    if (!isArray_) return;
    sink_.Take(values_);
    for (rapidjson::Value& value : values_) value.SetNull();
    std::fill(isKnown_.begin(), isKnown_.end(), false);
    field_ = kNoField;
  }

  std::span<const std::string_view> names_;
  JsonRowSink& sink_;
  std::vector<rapidjson::Value> values_;
  std::vector<bool> isKnown_;     ///< whether the element had a member of that name
  std::size_t field_ = kNoField;  ///< the one that the next value belongs to
  int depth_ = 0;
  bool isArray_ = false;  ///< the root
};

}  // namespace

JsonRowsOutcome ReadJsonRows(const std::wstring& path, std::span<const std::string_view> names,
                             JsonRowSink& sink, const JsonLimits& limits) {
  std::optional<JsonText> text = JsonText::TryRead(path, limits.fileBytes);
  if (!text) return JsonRowsOutcome::kUnreadable;
  return ReadJsonRows(*text, names, sink, limits.openValues);
}

JsonRowsOutcome ReadJsonRows(JsonText& text, std::span<const std::string_view> names,
                             JsonRowSink& sink, std::size_t mostOpenValues) {
  RowCollector collector(names, sink);
  rapidjson::InsituStringStream stream(text.Begin());
  constexpr unsigned kInPlace = rapidjson::kParseDefaultFlags | rapidjson::kParseInsituFlag;
  if (!ParseJson<kInPlace>(stream, collector, mostOpenValues)) {
    return JsonRowsOutcome::kUnreadable;
  }
  return collector.IsArray() ? JsonRowsOutcome::kRows : JsonRowsOutcome::kNoArray;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
