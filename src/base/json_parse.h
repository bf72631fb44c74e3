#pragma once

#include <cstddef>
#include <cstdint>

#include "base/json_limits.h"
#include "base/json_memory.h"

// Parsing a JSON text within the limits, for the two readers of this folder: json_document.h keeps
// everything, json_rows.h keeps what its caller asks for.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// Passes the parser's events on to `Target`, which is a handler too. Ends the parse, by returning
/// false, before a text would use up the stack or the memory of the process.
template <typename Target>
class GuardedJsonHandler {
 public:
  using Ch = char;
  using Size = rapidjson::SizeType;

  GuardedJsonHandler(Target& target, std::size_t mostOpenValues)
      : target_(target), mostOpenValues_(mostOpenValues) {}

  [[nodiscard]] bool Null() { return Count() && target_.Null(); }
  [[nodiscard]] bool Bool(bool value) { return Count() && target_.Bool(value); }
  [[nodiscard]] bool Int(int value) { return Count() && target_.Int(value); }
  [[nodiscard]] bool Uint(unsigned value) { return Count() && target_.Uint(value); }
  [[nodiscard]] bool Int64(std::int64_t value) { return Count() && target_.Int64(value); }
  [[nodiscard]] bool Uint64(std::uint64_t value) { return Count() && target_.Uint64(value); }
  [[nodiscard]] bool Double(double value) { return Count() && target_.Double(value); }
  [[nodiscard]] bool RawNumber(const Ch* text, Size length, bool copy) {
    return Count() && target_.RawNumber(text, length, copy);
  }
  [[nodiscard]] bool String(const Ch* text, Size length, bool copy) {
    return Count() && target_.String(text, length, copy);
  }
  [[nodiscard]] bool Key(const Ch* text, Size length, bool copy) {
    return Count() && target_.Key(text, length, copy);
  }
  [[nodiscard]] bool StartObject() { return Deepen() && Count() && target_.StartObject(); }
  [[nodiscard]] bool StartArray() { return Deepen() && Count() && target_.StartArray(); }
  [[nodiscard]] bool EndObject(Size count) {
    --depth_;
    openValues_ -= 2 * std::size_t{count};
    return target_.EndObject(count);
  }
  [[nodiscard]] bool EndArray(Size count) {
    --depth_;
    openValues_ -= count;
    return target_.EndArray(count);
  }

 private:
  [[nodiscard]] bool Deepen() { return ++depth_ <= kDeepestJsonNesting; }
  [[nodiscard]] bool Count() {
    return ++values_ <= kMostJsonValues && ++openValues_ <= mostOpenValues_;
  }

  Target& target_;
  const std::size_t mostOpenValues_;
  int depth_ = 0;
  std::size_t values_ = 0;
  std::size_t openValues_ = 0;
};

/// Parses the whole text of `stream` into `target`. False if the text is not JSON or breaks a limit
/// on its values.
template <unsigned flags, typename Stream, typename Target>
[[nodiscard]] bool ParseJson(Stream& stream, Target& target, std::size_t mostOpenValues) {
  GuardedJsonHandler<Target> handler(target, mostOpenValues);
  JsonReader reader;
  return !reader.Parse<flags>(stream, handler).IsError();
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
