#pragma once

#include "platform/wmi/wide_document.h"

namespace Zq::Gantry::Server::Shared::WMI {

/// Whether a text of the array "result" of `document`, an object, holds "CarbonSupport=1",
/// anywhere and in this case. The search ends without a hit at an element that is no text.
[[nodiscard]] bool HoldsCarbonMarker(const WideDocument& document);

}  // namespace Zq::Gantry::Server::Shared::WMI
