#pragma once

#include "security/trust/signer_descriptor.h"

// The public keys of acceptable signers, by position. The texts of the base lists come from the
// files in keys/; the build checks their form, number and repetition. Built while the library
// loads, never changed, and read from any thread afterwards. Repeated keys stay repeated; the order
// does not affect a comparison.
namespace Zq::Gantry::Security {

/// 45 keys: positions 0 to 30 with a 2048-bit modulus, 31 to 44 with 3072 bits. Position 12 repeats
/// position 9, and position 13 repeats position 11.
extern const KeyList PublicKeyPool;
extern const KeyList SingleKeyList;  ///< 1 key
extern const KeyList SecondKeyList;  ///< 4 keys

extern const KeyList SubsetKeyList;        ///< 6 keys of the pool; not used
extern const KeyList ServiceTrustedKeys;   ///< 46 keys; the collector library is checked by them
extern const KeyList ExtendedTrustedKeys;  ///< 35 keys

}  // namespace Zq::Gantry::Security
