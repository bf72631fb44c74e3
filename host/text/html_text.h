#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace WattleafHost {

/// `utf8`, which may be hostile, as text or attribute value of an HTML page: one line of at most
/// `limit` characters, the last of them "…" if the text is longer. Invalid bytes, control
/// characters and invisible characters that reorder or hide text become U+FFFD; "&", "<", ">", "\""
/// and "'" are written as references.
[[nodiscard]] std::string HtmlText(std::string_view utf8, std::size_t limit);

}  // namespace WattleafHost
