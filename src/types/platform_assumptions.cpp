// What the whole library takes for granted of the machine and the C library.

#include <climits>
#include <cstdint>

static_assert(CHAR_BIT == 8, "buffers hold 8-bit bytes");
static_assert(sizeof(int) == 4, "words and levels are 32-bit integers");
static_assert(sizeof(wchar_t) == 4, "a wide character holds one UTF-32 code unit");
static_assert(static_cast<unsigned char>(-1) == 0xFF && -1 >> 1 == -1,
              "negative numbers are two's complement");
