#pragma once

#include <rapidjson/document.h>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "base/json_limits.h"
#include "base/json_text.h"

// JSON files that hold one array of objects, read element by element: nothing of an element is kept
// once the next one begins.
namespace Zq::Gantry::Server::Services::Wattleaf {

/// What one element has under the names that were asked for, in their order: of several members
/// with one name the first. Null for a missing member, for an array and for an object; an element
/// that is not an object has no members. Valid until the next element.
using JsonRow = std::span<const rapidjson::Value>;

/// How the reading of a file ended.
enum class JsonRowsOutcome {
  kUnreadable,  ///< not opened, not JSON, or beyond a limit
  kNoArray,     ///< the root is something other than an array
  kRows,        ///< an array, perhaps an empty one
};

/// Receives the elements of a file. All that it received counts only if the reading succeeds.
class JsonRowSink {
 public:
  virtual ~JsonRowSink() = default;
  virtual void Take(JsonRow row) = 0;
};

/// Reads a file and passes each element of its array to `sink`. Accepts exactly the files that
/// LoadJsonDocument accepts. Exceptions of the sink propagate. `names` are distinct.
[[nodiscard]] JsonRowsOutcome ReadJsonRows(const std::wstring& path,
                                           std::span<const std::string_view> names,
                                           JsonRowSink& sink, const JsonLimits& limits = {});

/// The same for the text of a file, which is changed.
[[nodiscard]] JsonRowsOutcome ReadJsonRows(JsonText& text, std::span<const std::string_view> names,
                                           JsonRowSink& sink,
                                           std::size_t mostOpenValues = kMostJsonValues);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
