#include "base/json_document.h"

#include <rapidjson/filewritestream.h>
#include <rapidjson/reader.h>
#include <rapidjson/writer.h>

#include <memory>
#include <vector>

#include "base/guarded_json_stream.h"
#include "base/wide_file.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

constexpr std::size_t kStreamBufferBytes = 65536;

/// Passes the parser's events on to the document. Ends the parse, by returning false, before a text
/// would use up the stack or the memory of the process.
class GuardedBuilder {
 public:
  using Ch = char;
  using Size = rapidjson::SizeType;

  GuardedBuilder(GenericDocument& target, std::size_t mostOpenValues)
      : target_(target), mostOpenValues_(mostOpenValues) {}

  bool Null() { return Count() && target_.Null(); }
  bool Bool(bool value) { return Count() && target_.Bool(value); }
  bool Int(int value) { return Count() && target_.Int(value); }
  bool Uint(unsigned value) { return Count() && target_.Uint(value); }
  bool Int64(std::int64_t value) { return Count() && target_.Int64(value); }
  bool Uint64(std::uint64_t value) { return Count() && target_.Uint64(value); }
  bool Double(double value) { return Count() && target_.Double(value); }
  bool RawNumber(const Ch* text, Size length, bool copy) {
    return Count() && target_.RawNumber(text, length, copy);
  }
  bool String(const Ch* text, Size length, bool copy) {
    return Count() && target_.String(text, length, copy);
  }
  bool Key(const Ch* text, Size length, bool copy) {
    return Count() && target_.Key(text, length, copy);
  }
  bool StartObject() { return Deepen() && Count() && target_.StartObject(); }
  bool StartArray() { return Deepen() && Count() && target_.StartArray(); }
  bool EndObject(Size count) {
    --depth_;
    openValues_ -= 2 * std::size_t{count};
    return target_.EndObject(count);
  }
  bool EndArray(Size count) {
    --depth_;
    openValues_ -= count;
    return target_.EndArray(count);
  }

 private:
  bool Deepen() { return ++depth_ <= kDeepestJsonNesting; }
  bool Count() { return ++values_ <= kMostJsonValues && ++openValues_ <= mostOpenValues_; }

  GenericDocument& target_;
  const std::size_t mostOpenValues_;
  int depth_ = 0;
  std::size_t values_ = 0;
  std::size_t openValues_ = 0;
};

bool Parse(std::FILE* file, std::size_t largestBytes, std::size_t mostOpenValues,
           GenericDocument& document) {
  std::vector<char> buffer(kStreamBufferBytes);
  GuardedJsonStream stream(file, buffer.data(), buffer.size(), largestBytes);
  bool parsed = false;
  auto generator = [&](GenericDocument& target) {
    GuardedBuilder builder(target, mostOpenValues);
    rapidjson::Reader reader;
    parsed = !reader.Parse(stream, builder).IsError() && !stream.Refused();
    return parsed;
  };
  document.Populate(generator);
  return parsed;
}

}  // namespace

GenericDocument* LoadJsonDocument(const std::wstring& path, std::size_t largestBytes,
                                  std::size_t mostOpenValues) {
  const UniqueFile file = OpenForReading(path);
  if (!file) return nullptr;
  const std::int64_t length = LengthBytes(file.get());
  if (length < 0 || static_cast<std::uint64_t>(length) > largestBytes) return nullptr;

  auto document = std::make_unique<GenericDocument>();
  const bool isWhole = Parse(file.get(), largestBytes, mostOpenValues, *document);
  return isWhole ? document.release() : nullptr;
}

// Kept on purpose: in place, without a temporary file, and a write that fails half-way is not
// reported (test SaveJsonDocument.ReplacesAnExistingFile).
bool SaveJsonDocument(const std::wstring& path, const GenericDocument& document) {
  const UniqueFile file = OpenForWriting(path);
  if (!file) return false;

  std::vector<char> buffer(kStreamBufferBytes);
  rapidjson::FileWriteStream stream(file.get(), buffer.data(), buffer.size());
  rapidjson::Writer<rapidjson::FileWriteStream> writer(stream);
  document.Accept(writer);
  stream.Flush();
  return true;
}

const rapidjson::Value* TryMember(const rapidjson::Value& value, const char* name) {
  if (!value.IsObject()) return nullptr;
  const auto member = value.FindMember(name);
  return member != value.MemberEnd() ? &member->value : nullptr;
}

const rapidjson::Value* TryStringMember(const rapidjson::Value& value, const char* name) {
  const rapidjson::Value* member = TryMember(value, name);
  return member != nullptr && member->IsString() ? member : nullptr;
}

const rapidjson::Value* TryNumberMember(const rapidjson::Value& value, const char* name) {
  const rapidjson::Value* member = TryMember(value, name);
  return member != nullptr && member->IsNumber() ? member : nullptr;
}

std::string TextOf(const rapidjson::Value& text) {
  return {text.GetString(), text.GetStringLength()};
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
