#pragma once

#include <rapidjson/document.h>

#include <cstddef>
#include <string>

// JSON files of the data folder. Any user may have put a file there, so a file that exceeds one of
// the limits below counts as unreadable.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// RapidJSON's document over UTF-8 with a memory-pool allocator.
using GenericDocument = rapidjson::GenericDocument<rapidjson::UTF8<char>>;

/// The largest file that is read.
inline constexpr std::size_t kLargestDataFileBytes = 64U * 1024 * 1024;
/// Arrays and objects inside each other, the outermost included. The parser recurses.
inline constexpr int kDeepestJsonNesting = 64;
/// Values and member names together. RapidJSON's pools do not survive a failed allocation.
inline constexpr std::size_t kMostJsonValues = 8'000'000;

/// Reads a file into a new heap document, which the caller owns. Null if the file cannot be opened
/// or parsed, is larger than `largestBytes`, or exceeds another limit. `mostOpenValues` limits the
/// values and member names in arrays and objects that have not ended yet, which the parser keeps on
/// a stack. A link is followed, so callers check the path first (plain_file.h). Nothing is logged.
[[nodiscard]] GenericDocument* LoadJsonDocument(const std::wstring& path,
                                                std::size_t largestBytes = kLargestDataFileBytes,
                                                std::size_t mostOpenValues = kMostJsonValues);

/// Writes the document in place, without white space. False if the file cannot be opened for
/// writing, or is a folder or a link; a write that fails later is not reported.
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
