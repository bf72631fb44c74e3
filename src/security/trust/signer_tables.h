#pragma once

#include "security/trust/signer_descriptor.h"

// Known signers by the subject fields of their certificates. Built while the library loads, never
// changed, and read from any thread afterwards. Code that runs while the library loads must not use
// them. Only DropboxSignerRows is used, and of it only the common names
// (ZQAuthenticodeHelper::SubjectsMatch). The rows have no public key.
namespace Zq::Gantry::Security {

extern const SignatureList ZqSignerRows;           ///< 2 rows, with and without unit
extern const SignatureList DropboxSignerRows;      ///< 1 row
extern const SignatureList MicrosoftSignerRows;    ///< 1 row
extern const SignatureList BitdefenderSignerRows;  ///< 1 row

}  // namespace Zq::Gantry::Security
