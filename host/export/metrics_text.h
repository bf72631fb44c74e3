#pragma once

#include <string>

#include "snapshot/snapshot.h"

namespace WattleafHost {

/// A snapshot in the text format of Prometheus, for the text-file collector of an exporter;
/// docs/formats/host-output.md. Energy is joules, shares are ratios. A figure that is not known has
/// no sample, which is not the same as 0.
[[nodiscard]] std::string MetricsText(const Snapshot& snapshot);

/// A text as the value of a label, without the quotation marks around it.
[[nodiscard]] std::string LabelValue(const std::string& text);

}  // namespace WattleafHost
