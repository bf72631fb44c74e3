// Compiled for the toolchain of the production host, with standard types that are only named, to
// have the compiler print the tables of virtual operations that cross the boundary. Never linked.

#include "collection/data_collector.h"
#include "security/access/client_manifest_criteria.h"
#include "security/facade/zq_authenticode_facade.h"
#include "service/zq_service.h"

namespace {

// Running the destructor of exactly this class sets its table, which makes the compiler lay it out.
template <typename Contract>
void UseTable(Contract& object) {
  object.Contract::~Contract();
}

}  // namespace

void UseTables(Zq::Gantry::Server::Services::ZQService& service,
               Zq::Gantry::Server::Services::Wattleaf::DataCollector& collector,
               Zq::Gantry::Security::IClientWithNoZqManifestCheckCriteria& criteria) {
  UseTable(service);
  UseTable(collector);
  UseTable(criteria);
  // Nobody destroys this one through its table.
  Zq::Gantry::Security::ZQAuthenticodeFacade facade;
  facade.IsPathAllowed(nullptr);
}
