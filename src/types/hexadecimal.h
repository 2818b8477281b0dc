#ifndef COMMONAPI_TYPES_HEXADECIMAL_H
#define COMMONAPI_TYPES_HEXADECIMAL_H

#include <cstddef>

namespace CommonAPI::internal {

/// Writes two upper-case digits a byte: 2 * count characters, without a terminator.
void EncodeHexadecimal(unsigned char const* bytes, std::size_t count, char* digits);

/// Reads pairs of plain digits, of either case, up to the first pair that holds anything else.
/// Returns the number of bytes written, at most `pairs`.
std::size_t DecodeHexadecimal(char const* digits, std::size_t pairs, unsigned char* bytes);

}  // namespace CommonAPI::internal

#endif
