#include "security/trust/signer_tables.h"

namespace Zq::Gantry::Security {

namespace {

constexpr const wchar_t* kCodeSigningAuthority = L"DigiCert SHA2 Assured ID Code Signing CA";

}  // namespace

// The columns: common name, organizational unit, locality, organization, state, country, issuer.

const SignatureList ZqSignerRows = {
    {L"ZQ Inc.", L"ZQ Assurance", L"Elmhurst", L"ZQ Inc.", L"California", L"US",
     kCodeSigningAuthority},
    {L"ZQ Inc.", L"", L"Elmhurst", L"ZQ Inc.", L"California", L"US", kCodeSigningAuthority},
};

const SignatureList DropboxSignerRows = {
    {L"Dropbox, Inc", L"", L"San Francisco", L"Dropbox, Inc", L"California", L"US",
     kCodeSigningAuthority},
};

const SignatureList MicrosoftSignerRows = {
    // Kept on purpose: the blank before the organization.
    {L"Microsoft Corporation", L"", L"Redmond", L" Microsoft Corporation", L"Washington", L"US",
     L""},
};

const SignatureList BitdefenderSignerRows = {
    // Kept on purpose: this signer has no state.
    {L"Bitdefender SRL", L"", L"Bucharest", L"Bitdefender SRL", L"", L"RO", kCodeSigningAuthority},
};

}  // namespace Zq::Gantry::Security
