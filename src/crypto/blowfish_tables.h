#ifndef COMMONAPI_CRYPTO_BLOWFISH_TABLES_H
#define COMMONAPI_CRYPTO_BLOWFISH_TABLES_H

#include <cstdint>

namespace CommonAPI::internal {

using BlowfishSubkeys = std::uint32_t[18];
using BlowfishBoxes = std::uint32_t[4][256];

/// The tables of a cipher without a key: the fraction of pi, subkeys first.
extern BlowfishSubkeys const initialBlowfishSubkeys;
extern BlowfishBoxes const initialBlowfishBoxes;

}  // namespace CommonAPI::internal

#endif
