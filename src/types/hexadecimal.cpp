#include "types/hexadecimal.h"

#include "types/processor.h"

// Arithmetic without tables or branches, decoded in blocks of a fixed size, so that the compiler
// turns it into vector instructions: those of every processor of its kind and, to choose from at
// run time, wider ones. Not by `target_clones`, for which compilers export what they choose with.

namespace CommonAPI::internal {
namespace {

using Byte = unsigned char;

constexpr std::size_t blockSize = 32;

[[gnu::always_inline]] inline char DigitOf(Byte nibble) {
    return static_cast<char>(nibble + (nibble > 9 ? 'A' - 10 : '0'));
}

constexpr Byte noDigit = 0x80;

[[gnu::always_inline]] inline Byte ValueOf(char digit) {
    Byte const decimal = static_cast<Byte>(digit - '0');
    Byte const letter = static_cast<Byte>((digit | 0x20) - 'a');
    return static_cast<Byte>(decimal < 10 ? decimal : letter < 6 ? letter + 10 : noDigit);
}

/// False, with the bytes left without meaning, if any character is no digit.
[[gnu::always_inline]] inline bool DecodeBlock(char const* digits, Byte* bytes) {
    Byte values[2 * blockSize];
    Byte bad = 0;
    for (std::size_t i = 0; i < 2 * blockSize; ++i) {
        values[i] = ValueOf(digits[i]);
        bad |= values[i];
    }
    for (std::size_t i = 0; i < blockSize; ++i)
        bytes[i] = static_cast<Byte>(values[2 * i] << 4 | values[2 * i + 1]);
    return bad < noDigit;
}

[[gnu::always_inline]] inline void Encode(Byte const* bytes, std::size_t count, char* digits) {
    for (std::size_t i = 0; i < count; ++i) {
        digits[2 * i] = DigitOf(static_cast<Byte>(bytes[i] >> 4));
        digits[2 * i + 1] = DigitOf(bytes[i] & 0x0F);
    }
}

[[gnu::always_inline]] inline std::size_t Decode(char const* digits, std::size_t pairs,
                                                 Byte* bytes) {
    std::size_t done = 0;
    while (pairs - done >= blockSize && DecodeBlock(digits + 2 * done, bytes + done))
        done += blockSize;
    for (; done < pairs; ++done) {
        Byte const high = ValueOf(digits[2 * done]);
        Byte const low = ValueOf(digits[2 * done + 1]);
        if ((high | low) >= noDigit)
            break;
        bytes[done] = static_cast<Byte>(high << 4 | low);
    }
    return done;
}

#ifdef __x86_64__
[[gnu::target("avx2")]] void EncodeWide(Byte const* bytes, std::size_t count, char* digits) {
    Encode(bytes, count, digits);
}

[[gnu::target("avx2")]] std::size_t DecodeWide(char const* digits, std::size_t pairs, Byte* bytes) {
    return Decode(digits, pairs, bytes);
}

bool const wideIsSupported = HasAvx2();  // false to what runs before the library is initialised
#endif

}  // namespace

void EncodeHexadecimal(Byte const* bytes, std::size_t count, char* digits) {
#ifdef __x86_64__
    if (wideIsSupported)
        return EncodeWide(bytes, count, digits);
#endif
    Encode(bytes, count, digits);
}

std::size_t DecodeHexadecimal(char const* digits, std::size_t pairs, Byte* bytes) {
#ifdef __x86_64__
    if (wideIsSupported)
        return DecodeWide(digits, pairs, bytes);
#endif
    return Decode(digits, pairs, bytes);
}

}  // namespace CommonAPI::internal
