// Compiled for the toolchain of the production host, with standard types that are only named, to
// have the compiler print the tables of virtual operations that cross the boundary. Never linked.

#include "collection/data_collector.h"
#include "service/zq_service.h"

namespace {

// Running the destructor of exactly this class sets its table, which makes the compiler lay it out.
template <typename Contract>
void UseTable(Contract& object) {
  object.Contract::~Contract();
}

}  // namespace

void UseTables(Zq::Gantry::Server::Services::ZQService& service,
               Zq::Gantry::Server::Services::Wattleaf::DataCollector& collector) {
  UseTable(service);
  UseTable(collector);
}
