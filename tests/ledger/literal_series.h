#pragma once

#include <string>

#include "ledger/series.h"

// The charts of days and months the plain way: each day is looked up, each month walks over the
// whole ledger, and the text is that of a document. ledger/series.h must return the same.
namespace TestSupport {

[[nodiscard]] Zq::Gantry::Server::Services::Wattleaf::Series LiteralDaySeries(
    const Zq::Gantry::Server::Services::Wattleaf::DateTime& today,
    const Zq::Gantry::Server::Services::Wattleaf::PowerLedger& ledger);

[[nodiscard]] Zq::Gantry::Server::Services::Wattleaf::Series LiteralMonthSeries(
    const Zq::Gantry::Server::Services::Wattleaf::DateTime& today,
    const Zq::Gantry::Server::Services::Wattleaf::DateTime& now,
    const Zq::Gantry::Server::Services::Wattleaf::PowerLedger& ledger);

[[nodiscard]] std::wstring LiteralSeriesText(
    const Zq::Gantry::Server::Services::Wattleaf::Series& series, const char* labelKey);

}  // namespace TestSupport
