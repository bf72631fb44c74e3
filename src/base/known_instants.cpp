#include "base/known_instants.h"

namespace Zq::Gantry::Server::Services::Wattleaf {

namespace {

thread_local const KnownInstants* current = nullptr;

}  // namespace

KnownInstants::KnownInstants(const LocalTime& one, const LocalTime& other) : times_{one, other} {
  current = this;
}

KnownInstants::~KnownInstants() { current = nullptr; }

std::optional<std::int64_t> KnownInstants::TryFind(const DateTime& time) {
  if (current == nullptr) return std::nullopt;
  for (const LocalTime& known : current->times_) {
    if (HasSameFields(known.fields, time)) return known.instant;
  }
  return std::nullopt;
}

}  // namespace Zq::Gantry::Server::Services::Wattleaf
