#pragma once

#include "security/trust/signer_descriptor.h"

// Known signers by the fields of their certificates' subjects. Built while the library loads, never
// changed. Only DropboxSignerRows has a reader, which compares common names alone.
namespace Zq::Gantry::Security {

extern const SignatureList ZqSignerRows;
extern const SignatureList DropboxSignerRows;
extern const SignatureList MicrosoftSignerRows;
extern const SignatureList BitdefenderSignerRows;

}  // namespace Zq::Gantry::Security
