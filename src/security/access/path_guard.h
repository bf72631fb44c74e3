#pragma once

#include <string_view>

// What no parameter may be: an absolute path that climbs. Both tests end at the first null
// character. They answer as a search for the expression beside them (ECMAScript, `^` being the
// start of the text only), but need neither stack nor more than linear time.
namespace Zq::Gantry::Security {

/// ^((?:[\w]\:|\\)|(http[s]?\:)|(\%[\(|\w|\)]+\%))+
/// Begins with a drive letter and its colon, a backslash, a web scheme with its colon, or a
/// variable between percent signs.
bool HasPathShape(std::wstring_view text);

/// ((\/+)?\.\.(\/+)?)
/// Holds two points in a row.
bool HasTraversal(std::wstring_view text);

/// Whether the path guard rejects the text: it has both.
bool IsClimbingPath(std::wstring_view text);

}  // namespace Zq::Gantry::Security
