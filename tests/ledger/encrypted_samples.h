#pragma once

#include <string>
#include <string_view>

namespace TestSupport {

/// `text` (ASCII) as UTF-16LE.
std::string Utf16(std::string_view text);

/// Base64 around a blob of the data protection interface at machine scope, as the collector writes
/// it. Fails the test where the system refuses.
std::string Encrypted(const std::string& opened);

/// Base64 of any bytes.
std::string Base64(const std::string& bytes);

}  // namespace TestSupport
