#include "types/hexadecimal.h"

// Arithmetic without tables or branches, over blocks of a fixed size, so that the compiler turns it
// into vector instructions.

namespace CommonAPI::internal {
namespace {

using Byte = unsigned char;

constexpr std::size_t blockSize = 32;

char DigitOf(Byte nibble) {
    return static_cast<char>(nibble + (nibble > 9 ? 'A' - 10 : '0'));
}

/// The digit's value in the low half; a bit of the high half is set if it is no digit.
Byte ValueOf(char digit) {
    Byte const decimal = static_cast<Byte>(digit - '0');
    Byte const letter = static_cast<Byte>((digit | 0x20) - 'a');
    return static_cast<Byte>(decimal < 10 ? decimal : letter < 6 ? letter + 10 : 0x80);
}

/// False, with the bytes left without meaning, if any character is no digit.
bool DecodeBlock(char const* digits, Byte* bytes) {
    Byte bad = 0;
    for (std::size_t i = 0; i < blockSize; ++i) {
        Byte const high = ValueOf(digits[2 * i]);
        Byte const low = ValueOf(digits[2 * i + 1]);
        bad = static_cast<Byte>(bad | high | low);
        bytes[i] = static_cast<Byte>(high << 4 | low);
    }
    return bad < 0x80;
}

}  // namespace

void EncodeHexadecimal(Byte const* bytes, std::size_t count, char* digits) {
    for (std::size_t i = 0; i < count; ++i) {
        digits[2 * i] = DigitOf(static_cast<Byte>(bytes[i] >> 4));
        digits[2 * i + 1] = DigitOf(bytes[i] & 0x0F);
    }
}

std::size_t DecodeHexadecimal(char const* digits, std::size_t pairs, Byte* bytes) {
    std::size_t done = 0;
    while (pairs - done >= blockSize && DecodeBlock(digits + 2 * done, bytes + done))
        done += blockSize;
    for (; done < pairs; ++done) {
        Byte const high = ValueOf(digits[2 * done]);
        Byte const low = ValueOf(digits[2 * done + 1]);
        if ((high | low) & 0x80)
            break;
        bytes[done] = static_cast<Byte>(high << 4 | low);
    }
    return done;
}

}  // namespace CommonAPI::internal
