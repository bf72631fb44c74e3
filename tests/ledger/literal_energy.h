#pragma once

#include <functional>
#include <map>
#include <memory>

#include "base/calendar.h"
#include "base/json_document.h"

// The energy of a day and of an hour from whole documents, one element after the other and each
// time read where it is needed. What ledger/day_energy.h streams must have the same bits.
namespace TestSupport {

/// Reads one day's samples; null for a text that does not parse.
using DocumentReader =
    std::function<std::unique_ptr<Zq::Gantry::Server::Services::Wattleaf::GenericDocument>(
        const Zq::Gantry::Server::Services::Wattleaf::DateTime& day)>;

[[nodiscard]] float LiteralDayEnergyWh(const Zq::Gantry::Server::Services::Wattleaf::DateTime& day,
                                       const DocumentReader& read);

[[nodiscard]] std::map<int, float> LiteralHourlyEnergyWh(
    const Zq::Gantry::Server::Services::Wattleaf::GenericDocument* samples);

}  // namespace TestSupport
