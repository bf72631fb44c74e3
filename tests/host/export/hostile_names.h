#pragma once

#include <string>
#include <vector>

namespace TestSupport {

/// Names that a store written by others may have, as UTF-8: quotation marks, separators, line
/// breaks, control characters, formulas, markup, a replaced byte, and ten thousand characters.
inline const std::vector<std::string> kHostileNames = {
    "say \"hi\"",
    "back\\slash",
    "line\nbreak",
    "carriage\r\nreturn",
    "tab\tbell\x07 escape\x1B[31m",
    "comma, brace } semicolon;",
    "=HYPERLINK(\"http://x\",\"y\")",
    "<script>alert(1)</script>&amp;",
    "not UTF-8: \xEF\xBF\xBD",
    std::string(10'000, 'n'),
};

}  // namespace TestSupport
