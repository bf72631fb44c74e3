#pragma once

#include <functional>
#include <memory>
#include <string>

#include "base/calendar.h"
#include "base/json_document.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

/// Reads one day's samples; null for a day whose text does not parse, which counts as empty.
using DayReader = std::function<std::unique_ptr<GenericDocument>(const DateTime& day)>;

/// The collector's encrypted file of one day, in the given data folder.
std::wstring EncryptedSamplePath(const std::wstring& folder, const DateTime& day);

/// The plain copy that lies beside it for the moment of reading.
std::wstring PlainSamplePath(const std::wstring& folder, const DateTime& day);

}  // namespace Zq::Gantry::Server::Services::Wattleaf
