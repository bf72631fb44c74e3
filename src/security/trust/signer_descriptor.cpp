#include "security/trust/signer_descriptor.h"

#include <utility>

namespace Zq::Gantry::Security {

SignerDescriptor::SignerDescriptor(std::wstring rowCommonName, std::wstring rowOrganizationalUnit,
                                   std::wstring rowLocality, std::wstring rowOrganization,
                                   std::wstring rowState, std::wstring rowCountry,
                                   std::wstring rowIssuer)
    : commonName(std::move(rowCommonName)),
      organizationalUnit(std::move(rowOrganizationalUnit)),
      organization(std::move(rowOrganization)),
      locality(std::move(rowLocality)),
      state(std::move(rowState)),
      country(std::move(rowCountry)),
      issuer(std::move(rowIssuer)) {}

}  // namespace Zq::Gantry::Security
