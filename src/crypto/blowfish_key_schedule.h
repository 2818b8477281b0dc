#ifndef COMMONAPI_CRYPTO_BLOWFISH_KEY_SCHEDULE_H
#define COMMONAPI_CRYPTO_BLOWFISH_KEY_SCHEDULE_H

#include <cstddef>

#include "crypto/blowfish_tables.h"

namespace CommonAPI::internal {

/// Keys the tables as they stand; of the key, 72 bytes count. REQUIRES: length > 0.
void ScheduleBlowfishKey(char const* key, std::size_t length, BlowfishSubkeys& subkeys,
                         BlowfishBoxes& boxes);

}  // namespace CommonAPI::internal

#endif
