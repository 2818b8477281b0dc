#ifndef COMMONAPI_CRYPTO_BLOWFISH_KERNEL_H
#define COMMONAPI_CRYPTO_BLOWFISH_KERNEL_H

#include <cstddef>
#include <span>

#include "crypto/blowfish_tables.h"

namespace CommonAPI::internal {

/// Transforms `blocks` blocks of 8 bytes in place; `data` needs no alignment.
using BlowfishTransform = void(BlowfishSubkeys const& subkeys, BlowfishBoxes const& boxes,
                               unsigned char* data, std::size_t blocks);

/// One way to compute the cipher over many blocks.
struct BlowfishKernel {
    char const* name;
    /// Whether this processor and operating system can run it.
    bool (*supported)();
    BlowfishTransform* encrypt;
    BlowfishTransform* decrypt;
};

/// Every kernel built for this architecture, best first; the last one runs everywhere.
std::span<BlowfishKernel const> BlowfishKernels();

/// The first of them that is supported here.
BlowfishKernel const& ChosenBlowfishKernel();

BlowfishTransform EncryptBlowfishPortable;
BlowfishTransform DecryptBlowfishPortable;
BlowfishTransform EncryptBlowfishAvx512Vbmi;
BlowfishTransform DecryptBlowfishAvx512Vbmi;

}  // namespace CommonAPI::internal

#endif
