#pragma once

#include <string>

namespace Zq::Gantry::Security {

/// The shortest decimal text that reads back as the same number: "3", "0.1", "1e+06".
std::wstring ShortestNumberText(double number);

}  // namespace Zq::Gantry::Security
