#pragma once

#include <string>

#include "base/text_builders.h"

namespace TestSupport {

/// The Base64 text of `plain`, encrypted by the data protection interface at machine scope, as the
/// collector writes it. Fails the test and returns an empty text if the system cannot encrypt.
[[nodiscard]] std::string Encrypted(const std::string& plain);

/// Base64 of any bytes.
[[nodiscard]] std::string Base64(const std::string& bytes);

}  // namespace TestSupport
