#ifndef COMMONAPI_CRYPTO_WIPE_H
#define COMMONAPI_CRYPTO_WIPE_H

#include <string.h>

#include <cstddef>

namespace CommonAPI::internal {

/// Overwrites secrets with zeros before their memory is given back; the optimiser cannot drop it.
inline void Wipe(void* memory, std::size_t size) {
    explicit_bzero(memory, size);
}

/// Tells the optimiser that `memory` is read here, so that what was stored in it has to be there.
inline void KeepStores(void const* memory) {
    asm volatile("" : : "r"(memory) : "memory");
}

}  // namespace CommonAPI::internal

#endif
