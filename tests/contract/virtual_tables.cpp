// Makes the compiler print the tables of virtual operations that cross the boundary. Compiled for
// the toolchain of the production host, with standard types that are only declared, and never
// linked.

#include "collection/data_collector.h"
#include "security/access/client_manifest_criteria.h"
#include "security/facade/zq_authenticode_facade.h"
#include "service/zq_service.h"

namespace {

// A call of the destructor of exactly this class sets its table, so that the compiler lays it out.
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
  // The table of the facade has no destructor.
  Zq::Gantry::Security::ZQAuthenticodeFacade facade;
  facade.IsPathAllowed(nullptr);
}
