#pragma once

#include <string_view>

// The guard against climbing paths: absolute paths with two points in a row. Both checks end at the
// first null character. Each has the same answer as a search for the expression in its comment
// (ECMAScript, with `^` as the start of the text only), in linear time and without recursion.
namespace Zq::Gantry::Security {

/// ^((?:[\w]\:|\\)|(http[s]?\:)|(\%[\(|\w|\)]+\%))+
/// Begins with a drive letter and its colon, a backslash, a web scheme with its colon, or a
/// variable between percent signs.
[[nodiscard]] bool HasPathShape(std::wstring_view text);

/// ((\/+)?\.\.(\/+)?)
/// Contains two points in a row.
[[nodiscard]] bool HasTraversal(std::wstring_view text);

/// Whether the path guard refuses the text, which is if it has both.
[[nodiscard]] bool IsClimbingPath(std::wstring_view text);

}  // namespace Zq::Gantry::Security
