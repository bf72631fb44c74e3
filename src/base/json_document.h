#pragma once

#include <rapidjson/document.h>

#include <cstddef>
#include <string>

namespace Zq::Gantry::Server::Services::Wattleaf {

/// RapidJSON's document over UTF-8 with a memory-pool allocator.
using GenericDocument = rapidjson::GenericDocument<rapidjson::UTF8<char>>;

/// A larger file counts as unreadable, and so does deeper nesting: files of the data folder may
/// have been put there by anybody.
inline constexpr std::size_t kLargestDataFileBytes = 64U * 1024 * 1024;
inline constexpr int kDeepestJsonNesting = 64;
/// Values and member names together. The library's pools do not survive a failed allocation.
inline constexpr std::size_t kMostJsonValues = 8'000'000;

/// A new heap document owned by the caller; null for a file that cannot be opened or parsed, that
/// is larger than `largestBytes`, or in which more than `mostOpenValues` values and member names
/// stand in arrays and objects that have not ended: the parser keeps those on a stack.
GenericDocument* LoadJsonDocument(const std::wstring& path,
                                  std::size_t largestBytes = kLargestDataFileBytes,
                                  std::size_t mostOpenValues = kMostJsonValues);

/// Writes in place, without white space. False where the file cannot be opened for writing.
bool SaveJsonDocument(const std::wstring& path, const GenericDocument& document);

/// The first member of that name; null where `value` is no object or has none.
const rapidjson::Value* TryMember(const rapidjson::Value& value, const char* name);

/// The same for a member that is a string, and for one that is a number; of another type counts as
/// missing.
const rapidjson::Value* TryStringMember(const rapidjson::Value& value, const char* name);
const rapidjson::Value* TryNumberMember(const rapidjson::Value& value, const char* name);

/// The bytes of a string, zeros included.
std::string TextOf(const rapidjson::Value& text);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
