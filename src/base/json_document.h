#pragma once

#include <rapidjson/document.h>
#include <rapidjson/filewritestream.h>

#include <functional>
#include <string>

#include "base/json_limits.h"
#include "base/json_memory.h"

// JSON files of the data folder as documents. json_rows.h reads the same files without one.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// RapidJSON's document over UTF-8 with a memory-pool allocator.
using GenericDocument = rapidjson::GenericDocument<rapidjson::UTF8<char>>;

/// RapidJSON's writer into a file: no white space, the shortest text of each number.
using JsonWriter = JsonWriterInto<rapidjson::FileWriteStream>;

/// Reads a file into a new heap document, which the caller owns. Null if the file cannot be opened
/// or parsed, or breaks a limit. A link is followed, so callers check the path first
/// (plain_file.h). Nothing is logged.
[[nodiscard]] GenericDocument* LoadJsonDocument(const std::wstring& path,
                                                const JsonLimits& limits = {});

/// Writes what `write` passes to the writer, in place. False if the file cannot be opened for
/// writing, or is a folder or a link; a write that fails later is not reported.
[[nodiscard]] bool WriteJsonFile(const std::wstring& path,
                                 const std::function<void(JsonWriter&)>& write);

/// The same for a document.
[[nodiscard]] bool SaveJsonDocument(const std::wstring& path, const GenericDocument& document);

/// The first member of that name; null if `value` is not an object or has no such member. The
/// result belongs to the document.
[[nodiscard]] const rapidjson::Value* TryMember(const rapidjson::Value& value, const char* name);

/// The same for a member that must be a string, or a number: one of another type counts as missing.
[[nodiscard]] const rapidjson::Value* TryStringMember(const rapidjson::Value& value,
                                                      const char* name);
[[nodiscard]] const rapidjson::Value* TryNumberMember(const rapidjson::Value& value,
                                                      const char* name);

/// The UTF-8 bytes of a string value, embedded zeros included.
[[nodiscard]] std::string TextOf(const rapidjson::Value& text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
